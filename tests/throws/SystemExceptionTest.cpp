// An exception of the system's, which is no C++ exception, passes the bridge: to a handler of the module's own, to the
// process's, or to the system, which ends the process.
#include <gmock/gmock.h>

#include <tuple>

#include "abi/Pair.h"
#include "throws/ThrowsTest.h"

namespace {

struct SystemException {
    Thrown thrown;
    DWORD code;
    const char* name;
    const char* caught;
};

constexpr SystemException allSystemExceptions[] = {
    {Thrown::AccessViolation, STATUS_ACCESS_VIOLATION, "AccessViolation", "caught the access violation"},
    {Thrown::Breakpoint, STATUS_BREAKPOINT, "Breakpoint", "caught the breakpoint"},
    {Thrown::StackOverflow, STATUS_STACK_OVERFLOW, "StackOverflow", "caught the stack overflow"},
};

struct RaisingPlace {
    Place place;
    const char* name;
};

constexpr RaisingPlace allRaisingPlaces[] = {
    {Place::CollectProperties, "CollectProperties"}, {Place::OnSetting, "OnSetting"},
    {Place::VisitSetting, "VisitSetting"},           {Place::FreeCookie, "FreeCookie"},
    {Place::WriteOfBridge, "WriteOfBridge"},         {Place::OnLogEvent, "OnLogEvent"},
};

// The status that the process's own handler ends the process with.
constexpr int HandledStatus(DWORD code) {
    return static_cast<int>(0x5EE0000 | (code & 0xFFFF));
}

// Called by the system when no frame has taken the exception.
LONG WINAPI EndWithHandledStatus(EXCEPTION_POINTERS* raised) {
    const DWORD code = raised->ExceptionRecord->ExceptionCode;
    ::TerminateProcess(::GetCurrentProcess(), static_cast<UINT>(HandledStatus(code)));
    return EXCEPTION_CONTINUE_SEARCH;
}

class SystemExceptions : public ThrowsTest,
                         public testing::WithParamInterface<std::tuple<RaisingPlace, SystemException>> {
protected:
    void SetUp() override {
        ThrowsTest::SetUp();
        module.ThrowFrom(Raising(), std::get<1>(GetParam()).thrown);
    }

    static Place Raising() { return std::get<0>(GetParam()).place; }
    static DWORD Code() { return std::get<1>(GetParam()).code; }
};

TEST_P(SystemExceptions, EndTheProcess) {
    EXPECT_EXIT(Ask(Raising()), testing::ExitedWithCode(static_cast<int>(Code())), "");
}

TEST_P(SystemExceptions, ReachTheHandlerOfTheProcess) {
    EXPECT_EXIT(
        {
            ::SetUnhandledExceptionFilter(&EndWithHandledStatus);
            Ask(Raising());
        },
        testing::ExitedWithCode(HandledStatus(Code())), "");
}

INSTANTIATE_TEST_SUITE_P(Place, SystemExceptions,
                         testing::Combine(testing::ValuesIn(allRaisingPlaces), testing::ValuesIn(allSystemExceptions)),
                         [](const auto& tested) {
                             return std::string(std::get<0>(tested.param).name) + "_" + std::get<1>(tested.param).name;
                         });

class CaughtSystemException : public ThrowsTest, public testing::WithParamInterface<SystemException> {};

TEST_P(CaughtSystemException, IsTheModulesThatWalksAndTheWalkHoldsNothing) {
    if (ThisPair().module == "gnu") {
        GTEST_SKIP() << "g++ has no word for such handlers";
    }
    if (ThisPair().bridge == "microsoft") {
        GTEST_SKIP() << "that bridge is not shipped, and has its destructors run for C++ exceptions alone";
    }
    module.ThrowFrom(Place::OnSetting, GetParam().thrown, Catcher::ModuleAroundWalk);
    const std::vector<std::string> lines = Ask(Place::OnSetting);
    ASSERT_EQ(lines.size(), 5U) << testing::PrintToString(lines);
    EXPECT_EQ(GetParam().caught + lines[0].substr(std::string("walks").size()), lines[1]);
    EXPECT_THAT(lines, testing::ElementsAre(testing::_, testing::_, "walked", "digest", "answer 0"));
    EXPECT_EQ(HandlesInUse(), 0U);
}

INSTANTIATE_TEST_SUITE_P(Kind, CaughtSystemException, testing::ValuesIn(allSystemExceptions),
                         [](const auto& tested) { return tested.param.name; });

}  // namespace
