// What is no C++ exception goes on to whom it belongs: to a handler of the module's own, or to the system, which ends
// the process.
#include <gmock/gmock.h>

#include "throws/ThrowsTest.h"

namespace {

constexpr int accessViolation = static_cast<int>(STATUS_ACCESS_VIOLATION);

struct Violation {
    std::string file;
    Place place;
    const char* name;
};

class AccessViolations : public ThrowsTest, public testing::WithParamInterface<Violation> {
protected:
    AccessViolations() : ThrowsTest(GetParam().file) {}
};

TEST_P(AccessViolations, EndTheProcess) {
    module.ThrowFrom(GetParam().place, Thrown::AccessViolation);
    EXPECT_EXIT(Ask(GetParam().place), testing::ExitedWithCode(accessViolation), "");
}

std::vector<Violation> AllViolations() {
    std::vector<Violation> violations;
    for (const std::string& file : throwingModules) {
        violations.push_back({file, Place::CollectProperties, "CollectProperties"});
        violations.push_back({file, Place::OnSetting, "OnSetting"});
        violations.push_back({file, Place::VisitSetting, "VisitSetting"});
        violations.push_back({file, Place::FreeCookie, "FreeCookie"});
        violations.push_back({file, Place::WriteOfBridge, "WriteOfBridge"});
        violations.push_back({file, Place::OnLogEvent, "OnLogEvent"});
    }
    return violations;
}

INSTANTIATE_TEST_SUITE_P(Module, AccessViolations, testing::ValuesIn(AllViolations()),
                         [](const auto& tested) { return AbiOf(tested.param.file) + "_" + tested.param.name; });

// Microsoft's compiler has a word for such handlers, g++ has not.
class CaughtAccessViolation : public ThrowsTest {
protected:
    CaughtAccessViolation() : ThrowsTest(throwingModules.back()) {}
};

TEST_F(CaughtAccessViolation, IsTheModulesThatWalksAndTheWalkHoldsNothing) {
    module.ThrowFrom(Place::OnSetting, Thrown::AccessViolation, Catcher::ModuleAroundWalk);
    const std::vector<std::string> lines = Ask(Place::OnSetting);
    ASSERT_EQ(lines.size(), 5U) << testing::PrintToString(lines);
    EXPECT_EQ("caught the access violation" + lines[0].substr(std::string("walks").size()), lines[1]);
    EXPECT_THAT(lines, testing::ElementsAre(testing::_, testing::_, "walked", "digest", "answer 0"));
    EXPECT_EQ(HandlesInUse(), 0U);
}

}  // namespace
