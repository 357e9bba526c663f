// A module throws from each place where the bridge calls it. Answers, texts, locks and handles are the same for modules
// of either C++ ABI, and the object thrown is destroyed once.
#include <gmock/gmock.h>

#include <future>

#include "support/OnPurpose.h"
#include "throws/ThrowsTest.h"

namespace {

using Lines = std::vector<std::string>;

// One place in a module where it can throw, and the lines that are seen when the agent asks there.
struct Seen {
    friend void PrintTo(const Seen& seen, std::ostream* stream) { *stream << seen.name; }

    Place place;
    const char* name;
    Lines calm;      // while nothing is thrown
    Lines failed;    // with what was thrown
    Lines withCode;  // with an agent exception
};

const Lines walked = {"walked", "digest", "answer 0"};

Lines PolicyFailure(const std::string& what, const std::string& answer) {
    return {"Failed to get the policy for product id THROWING1000" + what, answer};
}
Lines PropertyFailure(const std::string& what, const std::string& answer) {
    return {"Failed to add property in the property bag for product id THROWING1000" + what, answer};
}
const std::string unknown = " due to unknown exception";
const std::string coded = ", exception: [77]";

Seen InPolicies(Place place, const char* name) {
    return {place, name, walked, PolicyFailure(unknown, "answer 3"), PolicyFailure(coded, "answer 77")};
}

// The agent's exception is the walk's failure.
Seen InWalk(Place place, const char* name) {
    return {place,
            name,
            walked,
            PolicyFailure(unknown, "answer 3"),
            {"Failed to iterate the policy bag for product id THROWING1000, exception 77", "walked not to the end",
             "digest", "answer 0"}};
}

Seen InProperties(Place place, const char* name) {
    return {place, name, {"answer 0"}, PropertyFailure(unknown, "answer 3"), PropertyFailure(coded, "answer 77")};
}

Seen InAll(Place place, const char* name, Lines calm, Lines failed) {
    return {place, name, std::move(calm), failed, failed};
}

const Seen allSeen[] = {
    InProperties(Place::CollectProperties, "CollectProperties"),
    InProperties(Place::LevelOfCollector, "LevelOfCollector"),
    InPolicies(Place::LevelOfEnforcer, "LevelOfEnforcer"),
    InPolicies(Place::EnforcePolicy, "EnforcePolicy"),
    InWalk(Place::OnContainer, "OnContainer"),
    InWalk(Place::OnSettings, "OnSettings"),
    InWalk(Place::OnSection, "OnSection"),
    InWalk(Place::OnSetting, "OnSetting"),
    {Place::OnSettingOfInnerWalk,
     "OnSettingOfInnerWalk",
     walked,
     PolicyFailure(unknown, "answer 3"),
     // Each of the two settings has a walk that fails, or the first one ends the section.
     {"Failed to iterate the policy bag for product id THROWING1000, exception 77", "walked", "digest", "answer 0"}},
    InAll(Place::ExecuteTask, "ExecuteTask", {"all shown", "answer 0, report TASK1 4"}, {"answer 3, report TASK1 3"}),
    InAll(Place::UpdateTaskStatus, "UpdateTaskStatus", {"answer 0, report TASK1 4"}, {"answer 3, report TASK1 3"}),
    InAll(Place::StopTask, "StopTask", {"answer 0"}, {"answer 3"}),
    InAll(Place::RemoveTask, "RemoveTask", {"answer 0"}, {"answer 3"}),
    InAll(Place::VisitSetting, "VisitSetting", {"all shown", "answer 0, report TASK1 4"},
          {"not all shown", "answer 0, report TASK1 4"}),
    InAll(Place::FreeCookie, "FreeCookie", {"freed", "returned"}, {"returned"}),
    InAll(Place::UpdateNotify, "UpdateNotify", {"answer 0, result 20"}, {"answer 0, result 2"}),
    InAll(Place::GetProductInfo, "GetProductInfo",
          {"answer 0, result 30, value <a value that is too long to be kept in an object of a few bytes>"},
          {"answer 0, result 1"}),
    InAll(Place::SetProductInfo, "SetProductInfo", {"answer 0, result 40"}, {"answer 0, result 1"}),
    InAll(Place::WriteOfBridge, "WriteOfBridge",
          {"Policy collection was not completed for product id THROWING1000", "answer 0"}, {"answer 0"}),
    InAll(Place::WriteOfRegistration, "WriteOfRegistration",
          {"Failed to add property for Version= 1.0, exception 5",
           "Failed to iterate the policy bag for product id THROWING1000, exception 5", "walked not to the end",
           "digest", "answer 0, answer 0"},
          {"walked not to the end", "digest", "answer 0, answer 0"}),
    InAll(Place::OnLogEvent, "OnLogEvent", {"listened", "walked", "digest", "answer 0"}, walked),
    InAll(Place::HostsManager, "HostsManager", {"logged a text", "walked", "digest", "answer 0"}, walked),
    InAll(Place::HostsWideEvent, "HostsWideEvent", {"logged a text", "walked", "digest", "answer 0"}, walked),
    InAll(Place::HostsFormattedEvent, "HostsFormattedEvent",
          {"logged a text", "walked", "logged a format", "", "answer 0"}, {"logged a text", "walked", "", "answer 0"}),
};

class AnsweredThrows : public ThrowsTest, public testing::WithParamInterface<Seen> {
protected:
    // Has the module throw in the place of the parameter and expects the lines, no handle left, and the thrown objects
    // destroyed. Then asks again from another thread, with nothing thrown.
    void Expect(Thrown thrown, Lines expected) {
        const Place place = GetParam().place;
        module.ThrowFrom(place, thrown);
        const Lines answered = AskWithoutThePassing(place);
        EXPECT_EQ(answered, expected);
        EXPECT_GE(module.Throws(), 1);
        EXPECT_EQ(HandlesInUse(), 0U);
        const ThrownObjects objects = module.Objects();
        EXPECT_EQ(objects.made, objects.destroyed);
        EXPECT_EQ(objects.damaged, 0);

        module.ThrowNothing();
        auto next = std::async(std::launch::async, [&] { return Ask(place); });
        ASSERT_EQ(next.wait_for(soon), std::future_status::ready);
        EXPECT_EQ(next.get(), GetParam().calm);
    }

private:
    // Each throw destroys what the module's own function held.
    Lines AskWithoutThePassing(Place place) {
        Lines lines = Ask(place);
        const auto passed = std::erase(lines, "passed the module's own function");
        EXPECT_EQ(passed, static_cast<size_t>(module.Throws()));
        return lines;
    }

    const OnPurpose usualMistakes{"CALLBACK-THREW"};
};

TEST_P(AnsweredThrows, ANumberIsAFailure) {
    Expect(Thrown::Number, GetParam().failed);
}

TEST_P(AnsweredThrows, ARuntimeErrorIsAFailure) {
    Expect(Thrown::RuntimeError, GetParam().failed);
}

TEST_P(AnsweredThrows, AnObjectIsAFailure) {
    const int32_t made = module.Objects().made;
    Expect(Thrown::Self, GetParam().failed);
    EXPECT_GT(module.Objects().made, made);
}

TEST_P(AnsweredThrows, AnObjectThatWasCaughtAndThrownOnIsAFailure) {
    Expect(Thrown::SelfAgain, GetParam().failed);
}

TEST_P(AnsweredThrows, AnAgentExceptionGivesItsCode) {
    Expect(Thrown::AgentException, GetParam().withCode);
}

INSTANTIATE_TEST_SUITE_P(Place, AnsweredThrows, testing::ValuesIn(allSeen),
                         [](const auto& tested) { return tested.param.name; });

}  // namespace
