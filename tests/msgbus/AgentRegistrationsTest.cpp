// What a service object has registered with the agent.
#include "msgbus/AgentRegistrations.h"

#include <gmock/gmock.h>

#include <functional>
#include <map>
#include <thread>

#include "support/Event.h"
#include "support/LineLog.h"

namespace {

using corvane::ny::utils::exception;
using testing::ElementsAre;

class Registrations : public testing::Test {
protected:
    // Each answers the code that `body` raises as the agent exception; NY_OK when it raises none.
    int32_t Add(const std::string& product, int32_t answer = NY_OK) {
        return CodeOf([&] { registrations.Add(product, Agent("add " + product, answer)); });
    }
    int32_t Remove(const std::string& product, int32_t answer = NY_OK) {
        return CodeOf([&] { registrations.Remove(product, Agent("remove " + product, answer)); });
    }
    // The agent answers what stands in `refusals`.
    int32_t Close() {
        return CodeOf([&] {
            registrations.Close([&](const std::string& product) {
                calls.Add("remove " + product);
                return refusals.contains(product) ? refusals[product] : int32_t{NY_OK};
            });
        });
    }

    LineLog calls;
    std::map<std::string, int32_t> refusals;
    AgentRegistrations registrations;

private:
    std::function<int32_t()> Agent(std::string call, int32_t answer) {
        return [this, call, answer] {
            calls.Add(call);
            return answer;
        };
    }
    static int32_t CodeOf(const std::function<void()>& body) {
        try {
            body();
        } catch (const exception& thrown) {
            return thrown.Code();
        }
        return NY_OK;
    }
};

TEST_F(Registrations, AreMadeOncePerProduct) {
    EXPECT_EQ(Add("a"), NY_OK);
    EXPECT_EQ(Add("a"), NY_OK);
    EXPECT_EQ(Add("A"), NY_OK);
    EXPECT_THAT(calls.Lines(), ElementsAre("add a", "add A"));
}

TEST_F(Registrations, ThatTheAgentRefusesAreNotKept) {
    EXPECT_EQ(Add("a", 77), 77);
    EXPECT_EQ(Remove("a"), NY_OK);
    EXPECT_EQ(Add("a"), NY_OK);
    EXPECT_THAT(calls.Lines(), ElementsAre("add a", "add a"));
}

TEST_F(Registrations, EndOncePerProduct) {
    Add("a");
    Add("b");
    calls.Take();
    EXPECT_EQ(Remove("a"), NY_OK);
    EXPECT_EQ(Remove("a"), NY_OK);
    EXPECT_EQ(Remove("c"), NY_OK);
    EXPECT_EQ(Add("a"), NY_OK);
    EXPECT_THAT(calls.Lines(), ElementsAre("remove a", "add a"));
}

TEST_F(Registrations, ThatTheAgentDoesNotLetGoOfStay) {
    Add("a");
    EXPECT_EQ(Remove("a", 77), 77);
    EXPECT_EQ(Add("a"), NY_OK);
    EXPECT_EQ(Remove("a"), NY_OK);
    EXPECT_THAT(calls.Lines(), ElementsAre("add a", "remove a", "remove a"));
}

TEST_F(Registrations, AllEndWhenTheyAreClosedAndNoneIsMadeAfterwards) {
    Add("a");
    Add("b");
    calls.Take();
    EXPECT_EQ(Close(), NY_OK);
    EXPECT_EQ(Add("c"), NY_OK);
    EXPECT_EQ(Close(), NY_OK);
    EXPECT_THAT(calls.Lines(), ElementsAre("remove a", "remove b"));
}

TEST_F(Registrations, AreAllTriedWhenTheyAreClosedAndTheFirstRefusalIsTold) {
    Add("a");
    Add("b");
    Add("c");
    calls.Take();
    refusals = {{"a", 77}, {"c", 88}};
    EXPECT_EQ(Close(), 77);
    EXPECT_THAT(calls.Take(), ElementsAre("remove a", "remove b", "remove c"));
    refusals = {};
    EXPECT_EQ(Close(), NY_OK);
    EXPECT_THAT(calls.Lines(), ElementsAre("remove a", "remove c"));
}

// Two products' threads that register the same one: the second waits for the agent's answer to the first.
TEST_F(Registrations, OfOneProductOnTwoThreadsAreMadeOnce) {
    Event isInside;
    Event mayGoOn;
    std::thread first([&] {
        registrations.Add("a", [&] {
            isInside.Set();
            EXPECT_TRUE(mayGoOn.Wait());
            calls.Add("add a");
            return NY_OK;
        });
    });
    ASSERT_TRUE(isInside.Wait());
    Event isSecondDone;
    std::thread second([&] {
        Add("a");
        isSecondDone.Set();
    });
    EXPECT_FALSE(isSecondDone.Wait(std::chrono::milliseconds(20)));
    mayGoOn.Set();
    first.join();
    second.join();
    EXPECT_THAT(calls.Lines(), ElementsAre("add a"));
}

// The agent waits for callbacks, and a callback that enters or leaves the bridge comes here.
TEST_F(Registrations, CanBeMadeWhileTheAgentEndsOne) {
    Add("a");
    registrations.Remove("a", [&] {
        std::thread([&] { Add("b"); }).join();
        return NY_OK;
    });
    registrations.Close([&](const std::string& product) {
        std::thread([&] { Remove(product); }).join();
        calls.Add("close " + product);
        return NY_OK;
    });
    EXPECT_THAT(calls.Lines(), ElementsAre("add a", "add b", "close b"));
}

}  // namespace
