// What is no C++ exception goes on to whom it belongs: to a handler of the module's own, or to the system, which ends
// the process.
#include <gmock/gmock.h>

#include "abi/Pair.h"
#include "throws/ThrowsTest.h"

namespace {

constexpr int accessViolation = static_cast<int>(STATUS_ACCESS_VIOLATION);

struct Violation {
    Place place;
    const char* name;
};

class AccessViolation : public ThrowsTest, public testing::WithParamInterface<Violation> {};

TEST_P(AccessViolation, EndTheProcess) {
    module.ThrowFrom(GetParam().place, Thrown::AccessViolation);
    EXPECT_EXIT(Ask(GetParam().place), testing::ExitedWithCode(accessViolation), "");
}

constexpr Violation allViolations[] = {
    {Place::CollectProperties, "CollectProperties"}, {Place::OnSetting, "OnSetting"},
    {Place::VisitSetting, "VisitSetting"},           {Place::FreeCookie, "FreeCookie"},
    {Place::WriteOfBridge, "WriteOfBridge"},         {Place::OnLogEvent, "OnLogEvent"},
};

INSTANTIATE_TEST_SUITE_P(Place, AccessViolation, testing::ValuesIn(allViolations),
                         [](const auto& tested) { return tested.param.name; });

class CaughtAccessViolation : public ThrowsTest {};

TEST_F(CaughtAccessViolation, IsTheModulesThatWalksAndTheWalkHoldsNothing) {
    if (ThisPair().module == "gnu") {
        GTEST_SKIP() << "g++ has no word for such handlers";
    }
    if (ThisPair().bridge == "microsoft") {
        GTEST_SKIP() << "that bridge is not shipped, and has its destructors run for C++ exceptions alone";
    }
    module.ThrowFrom(Place::OnSetting, Thrown::AccessViolation, Catcher::ModuleAroundWalk);
    const std::vector<std::string> lines = Ask(Place::OnSetting);
    ASSERT_EQ(lines.size(), 5U) << testing::PrintToString(lines);
    EXPECT_EQ("caught the access violation" + lines[0].substr(std::string("walks").size()), lines[1]);
    EXPECT_THAT(lines, testing::ElementsAre(testing::_, testing::_, "walked", "digest", "answer 0"));
    EXPECT_EQ(HandlesInUse(), 0U);
}

}  // namespace
