// Faults of one library's own calls.
#include <gtest/gtest.h>
#include <windows.h>

#include <set>
#include <string>

#include "win32_faults.h"

using win32::Callers;
using win32::FailCall;
using win32::FaultMode;

namespace {

class WatchTest : public testing::Test {
protected:
    ~WatchTest() override {
        win32::ClearFaults();
        win32::UnwatchLibraries();
        ::CloseHandle(event);
        ::FreeLibrary(library);
    }

    template <class Function>
    Function Sample(const char* name) const {
        return reinterpret_cast<Function>(::GetProcAddress(library, name));
    }

    const HANDLE event = ::CreateEventA(nullptr, TRUE, FALSE, nullptr);
    const HMODULE library = ::LoadLibraryA("win32_sample.dll");
    BOOL (*const setEvent)(HANDLE) = Sample<BOOL (*)(HANDLE)>("SampleSetEvent");
    DWORD (*const wait)(HANDLE, DWORD) = Sample<DWORD (*)(HANDLE, DWORD)>("SampleWait");
};

TEST_F(WatchTest, CallsAreThoseOfTheLibraryAlone) {
    ASSERT_TRUE(win32::WatchLibrary("win32_sample.dll"));
    const size_t before = win32::Uses("SetEvent", Callers::Watched);
    ::SetEvent(event);
    EXPECT_EQ(win32::Uses("SetEvent", Callers::Watched), before);
    setEvent(event);
    EXPECT_EQ(win32::Uses("SetEvent", Callers::Watched), before + 1);
}

TEST_F(WatchTest, CallsFailWhileOthersDoNot) {
    ASSERT_TRUE(win32::WatchLibrary("win32_sample.dll"));
    const size_t before = win32::FailedUses();
    ASSERT_TRUE(FailCall("SetEvent", 2, 5, FaultMode::Once, Callers::Watched));
    EXPECT_TRUE(::SetEvent(event));
    EXPECT_TRUE(setEvent(event));
    EXPECT_TRUE(::SetEvent(event));
    EXPECT_FALSE(setEvent(event));
    EXPECT_EQ(::GetLastError(), 5U);
    EXPECT_TRUE(setEvent(event));
    EXPECT_EQ(win32::FailedUses(), before + 1);
}

TEST_F(WatchTest, CallsFailFromThenOnUntilNoLibraryIsWatched) {
    ASSERT_TRUE(win32::WatchLibrary("win32_sample.dll"));
    FailCall("SetEvent", 1, 5, FaultMode::FromThenOn, Callers::Watched);
    EXPECT_FALSE(setEvent(event));
    EXPECT_FALSE(setEvent(event));
    win32::UnwatchLibraries();
    EXPECT_TRUE(setEvent(event));
}

TEST_F(WatchTest, WaitsAreNoLongerThanTheLimit) {
    ASSERT_TRUE(win32::WatchLibrary("win32_sample.dll"));
    win32::LimitWatchedWaits(1);
    // Without the limit, this would be the end of the test's time.
    EXPECT_EQ(wait(event, 600'000), DWORD{WAIT_TIMEOUT});
    ::SetEvent(event);
    EXPECT_EQ(wait(event, INFINITE), DWORD{WAIT_OBJECT_0});
}

TEST_F(WatchTest, LibraryMustBeThere) {
    EXPECT_FALSE(win32::WatchLibrary("no_such_library.dll"));
}

TEST(Functions, ThatCanBeMadeToFailAreListed) {
    std::set<std::string> names;
    for (size_t i = 0; win32::FunctionAt(i) != nullptr; ++i) {
        names.insert(win32::FunctionAt(i));
    }
    EXPECT_TRUE(names.contains("RegOpenKeyExA"));
    EXPECT_TRUE(names.contains("WriteFile"));
    EXPECT_FALSE(names.contains("GetLastError"));
}

TEST(Handles, OpenedSinceAMarkCanBeClosed) {
    const HANDLE before = ::CreateEventA(nullptr, TRUE, FALSE, nullptr);
    const size_t open = win32::OpenHandles();
    const size_t mark = win32::HandleMark();
    ::CreateEventA(nullptr, TRUE, FALSE, nullptr);
    ::CreateEventA(nullptr, TRUE, FALSE, nullptr);
    EXPECT_EQ(win32::OpenHandles(), open + 2);
    win32::CloseHandlesSince(mark);
    EXPECT_EQ(win32::OpenHandles(), open);
    EXPECT_TRUE(::SetEvent(before));
    ::CloseHandle(before);
}

}  // namespace
