// A walk's callback throws through the walk to the module that began it: it catches its own object, and the walk holds
// nothing any more by then.
#include <gmock/gmock.h>

#include <tuple>

#include "throws/ThrowsTest.h"

namespace {

using testing::Combine;
using testing::ValuesIn;

struct Passing {
    Thrown thrown;
    const char* name;
    const char* caught;
};

const Passing allPassing[] = {
    {Thrown::Number, "Number", "caught the number 42"},
    {Thrown::RuntimeError, "RuntimeError",
     "caught an error: a text that is too long to be kept in an object of a few bytes"},
    {Thrown::Self, "Object", "caught the object"},
    {Thrown::SelfAgain, "ObjectThatWasCaughtBefore", "caught the object"},
};

struct Callback {
    Place place;
    const char* name;
};

const Callback allCallbacks[] = {
    {Place::OnContainer, "OnContainer"},
    {Place::OnSettings, "OnSettings"},
    {Place::OnSection, "OnSection"},
    {Place::OnSetting, "OnSetting"},
    {Place::OnSettingOfInnerWalk, "OnSettingOfInnerWalk"},
};

using Parameters = std::tuple<Callback, Passing>;

class ThrowsThroughWalks : public ThrowsTest, public testing::WithParamInterface<Parameters> {
protected:
    void ExpectCaughtByModule(Catcher catcher) {
        const Passing& passing = std::get<1>(GetParam());
        module.ThrowFrom(std::get<0>(GetParam()).place, passing.thrown, catcher);
        const std::vector<std::string> lines = Ask(Place::OnSetting);
        ASSERT_EQ(lines.size(), 6U) << testing::PrintToString(lines);
        const std::string walks = "walks";
        ASSERT_TRUE(lines[0].starts_with(walks));
        const std::string handles = lines[0].substr(walks.size());
        EXPECT_THAT(lines, testing::ElementsAre(walks + handles, "passed the module's own function",
                                                passing.caught + handles, "walked", "digest", "answer 0"));
        EXPECT_EQ(HandlesInUse(), 0U);
        const ThrownObjects objects = module.Objects();
        EXPECT_EQ(objects.made, objects.destroyed);
        EXPECT_EQ(objects.damaged, 0);
    }
};

TEST_P(ThrowsThroughWalks, OfTheMachine) {
    ExpectCaughtByModule(Catcher::ModuleAroundWalk);
}

TEST_P(ThrowsThroughWalks, OfAUser) {
    ExpectCaughtByModule(Catcher::ModuleAroundUserWalk);
}

INSTANTIATE_TEST_SUITE_P(Callback, ThrowsThroughWalks, Combine(ValuesIn(allCallbacks), ValuesIn(allPassing)),
                         [](const auto& tested) {
                             return std::string(std::get<0>(tested.param).name) + "_" + std::get<1>(tested.param).name;
                         });

}  // namespace
