// The registrations of a service object with the agent. The fixture plays the agent: `calls` has what it was asked,
// `refusals` what it refuses, and `whileInside` what happens during a call.
#include "msgbus/registrations/AgentRegistrations.h"

#include <gmock/gmock.h>

#include <functional>
#include <map>
#include <thread>

#include "support/Event.h"
#include "support/LineLog.h"
#include "values/AgentException.h"

namespace {

using corvane::ny::utils::exception;
using testing::ElementsAre;

class AgentRegistrationsTest : public testing::Test, protected AgentRegistrations::Agent {
protected:
    // Each answers the code that was raised as the agent exception; NY_OK when none was.
    int32_t Add(const std::string& product) {
        return CodeOf([&] { registrations.Add(product); });
    }
    int32_t Remove(const std::string& product) {
        return CodeOf([&] { registrations.Remove(product); });
    }
    int32_t Close() {
        return CodeOf([&] { registrations.Close(); });
    }

    LineLog calls;
    std::map<std::string, int32_t> refusals;                   // what the agent answers, by the call's line
    std::map<std::string, std::function<void()>> whileInside;  // what happens, once, while the agent is at it
    AgentRegistrations registrations{*this};

private:
    int32_t Register(const std::string& productId) override { return Call("add " + productId); }
    int32_t Unregister(const std::string& productId) override { return Call("remove " + productId); }

    int32_t Call(const std::string& line) {
        calls.Add(line);
        if (const auto happening = whileInside.extract(line)) {
            happening.mapped()();
        }
        return refusals.contains(line) ? refusals[line] : int32_t{NY_OK};
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

TEST_F(AgentRegistrationsTest, AreMadeOncePerProduct) {
    EXPECT_EQ(Add("a"), NY_OK);
    EXPECT_EQ(Add("a"), NY_OK);
    EXPECT_EQ(Add("A"), NY_OK);
    EXPECT_THAT(calls.Lines(), ElementsAre("add a", "add A"));
}

TEST_F(AgentRegistrationsTest, AreNotKeptWhenTheAgentRefusesThem) {
    refusals = {{"add a", 77}};
    EXPECT_EQ(Add("a"), 77);
    EXPECT_EQ(Remove("a"), NY_OK);
    refusals = {};
    EXPECT_EQ(Add("a"), NY_OK);
    EXPECT_THAT(calls.Lines(), ElementsAre("add a", "add a"));
}

TEST_F(AgentRegistrationsTest, EndOncePerProduct) {
    Add("a");
    Add("b");
    calls.Take();
    EXPECT_EQ(Remove("a"), NY_OK);
    EXPECT_EQ(Remove("a"), NY_OK);
    EXPECT_EQ(Remove("c"), NY_OK);
    EXPECT_EQ(Add("a"), NY_OK);
    EXPECT_THAT(calls.Lines(), ElementsAre("remove a", "add a"));
}

TEST_F(AgentRegistrationsTest, StayWhenTheAgentRefusesToEndThem) {
    Add("a");
    refusals = {{"remove a", 77}};
    EXPECT_EQ(Remove("a"), 77);
    refusals = {};
    EXPECT_EQ(Add("a"), NY_OK);
    EXPECT_EQ(Remove("a"), NY_OK);
    EXPECT_THAT(calls.Lines(), ElementsAre("add a", "remove a", "remove a"));
}

TEST_F(AgentRegistrationsTest, AllEndWhenTheyAreClosedAndNoneIsMadeAfterwards) {
    Add("a");
    Add("b");
    calls.Take();
    EXPECT_EQ(Close(), NY_OK);
    EXPECT_EQ(Add("c"), NY_OK);
    EXPECT_EQ(Close(), NY_OK);
    EXPECT_THAT(calls.Lines(), ElementsAre("remove a", "remove b"));
}

TEST_F(AgentRegistrationsTest, AreAllTriedWhenTheyAreClosedAndTheFirstRefusalIsTold) {
    Add("a");
    Add("b");
    Add("c");
    calls.Take();
    refusals = {{"remove a", 77}, {"remove c", 88}};
    EXPECT_EQ(Close(), 77);
    EXPECT_THAT(calls.Take(), ElementsAre("remove a", "remove b", "remove c"));
    refusals = {};
    EXPECT_EQ(Close(), NY_OK);
    EXPECT_THAT(calls.Lines(), ElementsAre("remove a", "remove c"));
}

// The one that is left is where closing would go on.
TEST_F(AgentRegistrationsTest, MayBeLeftWhileTheOthersAreClosed) {
    Add("a");
    Add("b");
    Add("c");
    calls.Take();
    whileInside["remove a"] = [this] { EXPECT_EQ(Remove("b"), NY_OK); };
    EXPECT_EQ(Close(), NY_OK);
    EXPECT_THAT(calls.Lines(), ElementsAre("remove a", "remove b", "remove c"));
}

// A thread that waited there could be waiting for itself: the agent may be waiting for a callback that comes here.
TEST_F(AgentRegistrationsTest, OfOneProductOnTwoThreadsAreMadeOnceAndNoThreadWaits) {
    whileInside["add a"] = [this] {
        std::thread([this] { EXPECT_EQ(Add("a"), NY_OK); }).join();
        EXPECT_EQ(Add("a"), NY_OK);
    };
    EXPECT_EQ(Add("a"), NY_OK);
    EXPECT_THAT(calls.Lines(), ElementsAre("add a"));
}

TEST_F(AgentRegistrationsTest, OfAProductThatLeavesWhileItIsRegisteredEndAtOnce) {
    whileInside["add a"] = [this] { std::thread([this] { EXPECT_EQ(Remove("a"), NY_OK); }).join(); };
    EXPECT_EQ(Add("a"), NY_OK);
    EXPECT_THAT(calls.Take(), ElementsAre("add a", "remove a"));
    EXPECT_EQ(Remove("a"), NY_OK);
    EXPECT_EQ(Close(), NY_OK);
    EXPECT_TRUE(calls.Take().empty());
}

TEST_F(AgentRegistrationsTest, OfAProductThatLeavesAndComesBackMeanwhileStay) {
    whileInside["add a"] = [this] {
        EXPECT_EQ(Remove("a"), NY_OK);
        EXPECT_EQ(Add("a"), NY_OK);
    };
    EXPECT_EQ(Add("a"), NY_OK);
    EXPECT_THAT(calls.Lines(), ElementsAre("add a"));
}

TEST_F(AgentRegistrationsTest, OfAProductThatComesBackWhileItIsUnregisteredAreMadeAnew) {
    Add("a");
    whileInside["remove a"] = [this] { EXPECT_EQ(Add("a"), NY_OK); };
    EXPECT_EQ(Remove("a"), NY_OK);
    EXPECT_THAT(calls.Take(), ElementsAre("add a", "remove a", "add a"));
    EXPECT_EQ(Remove("a"), NY_OK);
    EXPECT_THAT(calls.Lines(), ElementsAre("remove a"));
}

// Add tells how the agent answered "add", and not how it answered the "remove" that followed.
TEST_F(AgentRegistrationsTest, AreAddedAlsoWhenTheAgentRefusesTheEndThatFollowed) {
    refusals = {{"remove a", 77}};
    whileInside["add a"] = [this] { EXPECT_EQ(Remove("a"), NY_OK); };
    EXPECT_EQ(Add("a"), NY_OK);
    EXPECT_THAT(calls.Lines(), ElementsAre("add a", "remove a"));
}

TEST_F(AgentRegistrationsTest, AreNotEndedWhenTheAgentRefusedThemWhileTheProductLeft) {
    refusals = {{"add a", 77}};
    whileInside["add a"] = [this] { EXPECT_EQ(Remove("a"), NY_OK); };
    EXPECT_EQ(Add("a"), 77);
    EXPECT_THAT(calls.Lines(), ElementsAre("add a"));
}

// The agent may wait for a callback that enters or leaves the bridge, which adds and removes registrations.
TEST_F(AgentRegistrationsTest, CanBeMadeAndEndedWhileTheAgentEndsOthers) {
    Add("a");
    whileInside["remove a"] = [this] { std::thread([this] { Add("b"); }).join(); };
    EXPECT_EQ(Remove("a"), NY_OK);
    whileInside["remove b"] = [this] { std::thread([this] { EXPECT_EQ(Remove("b"), NY_OK); }).join(); };
    EXPECT_EQ(Close(), NY_OK);
    EXPECT_THAT(calls.Lines(), ElementsAre("add a", "remove a", "add b", "remove b"));
}

// The thread that is making the registration in the agent ends it.
TEST_F(AgentRegistrationsTest, EndAfterACloseThatComesWhileTheyAreMade) {
    whileInside["add a"] = [this] { std::thread([this] { EXPECT_EQ(Close(), NY_OK); }).join(); };
    EXPECT_EQ(Add("a"), NY_OK);
    EXPECT_THAT(calls.Lines(), ElementsAre("add a", "remove a"));
}

}  // namespace
