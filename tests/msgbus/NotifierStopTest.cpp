// Stopping the install watcher while its thread is busy, pauses, or is the caller.
#include <chrono>

#include "msgbus/NotifierFixture.h"
#include "msgbus/SystemCalls.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class NotifierStopping : public NotifierFixture {
protected:
    // Leaves the watcher's thread inside the state handler.
    void StartAndHold() {
        WriteVersion("5.7.0");
        notifier->stopTimeout = 1;
        StartAndWatch();
        HoldAtNextState();
        WriteVersion("5.8.0");
        ASSERT_TRUE(WaitUntilHeld());
        EXPECT_THAT(lines.Take(), ElementsAre(Upgraded("5.8.0"), "state 0"));
    }

    // Another handle of the thread, for waiting after the notifier is gone.
    HANDLE ThreadHandle() const {
        HANDLE copy = nullptr;
        ::DuplicateHandle(::GetCurrentProcess(), notifier->thread, ::GetCurrentProcess(), &copy, SYNCHRONIZE, FALSE, 0);
        return copy;
    }

    static void WaitAndClose(HANDLE thread) {
        EXPECT_EQ(::WaitForSingleObject(thread, static_cast<DWORD>(soon.count())), WAIT_OBJECT_0);
        ::CloseHandle(thread);
    }

    static void AddLast(void* userData) {
        auto& fixture = *static_cast<NotifierStopping*>(userData);
        fixture.lastThread = ::GetCurrentThreadId();
        fixture.lines.Add("last");
    }

    DWORD lastThread = 0;
};

TEST_F(NotifierStopping, IsPromptWhileTheKeyIsMissing) {
    ASSERT_EQ(Start(), NY_OK);
    ASSERT_TRUE(lines.WaitFor(pausing));
    ASSERT_EQ(notifier->pauseTimeout, 15000U);
    const auto before = std::chrono::steady_clock::now();
    EXPECT_EQ(NotifierStop(notifier), NY_OK);
    EXPECT_LT(std::chrono::steady_clock::now() - before, std::chrono::seconds(7));
    EXPECT_THAT(lines.Lines(),
                ElementsAre(keyMissingAtCheck, threadStarted, keyMissing, pausing, threadExiting, threadStopped));
}

TEST_F(NotifierStopping, OfAThreadThatDoesNotEndInTimeFailsAndFreesNothing) {
    StartAndHold();
    EXPECT_EQ(NotifierStop(notifier), NY_UNEXPECTED);
    EXPECT_THAT(lines.Take(), ElementsAre(threadNotStopped));
    EXPECT_EQ(notifier->running.load(), 1);
    EXPECT_NE(notifier->thread, nullptr);
    EXPECT_FALSE(NotifierHasEnded(notifier));
    Continue();
    WaitForThread();
    EXPECT_THAT(lines.Lines(), ElementsAre("state 1", threadExiting));
    EXPECT_TRUE(NotifierHasEnded(notifier));
    EXPECT_EQ(NotifierStop(notifier), NY_OK);
}

TEST_F(NotifierStopping, LeavesTheRestToTheThreadWhichDoesItLast) {
    StartAndHold();
    ASSERT_EQ(NotifierStop(notifier), NY_UNEXPECTED);
    EXPECT_TRUE(NotifierHandOver(notifier, AddLast, this));
    const DWORD watcherThread = notifier->threadId.load();
    Continue();
    WaitForThread();
    EXPECT_THAT(lines.Lines(), ElementsAre(threadNotStopped, "state 1", threadExiting, "last"));
    EXPECT_EQ(lastThread, watcherThread);
}

TEST_F(NotifierStopping, KeepsTheRestWhenTheThreadHasEnded) {
    StartAndHold();
    ASSERT_EQ(NotifierStop(notifier), NY_UNEXPECTED);
    Continue();
    WaitForThread();
    lines.Take();
    EXPECT_FALSE(NotifierHandOver(notifier, AddLast, this));
    EXPECT_THAT(lines.Lines(), IsEmpty());
}

TEST_F(NotifierStopping, KeepsTheRestOfANotifierWithoutAThread) {
    EXPECT_FALSE(NotifierHandOver(notifier, AddLast, this));
    EXPECT_THAT(lines.Lines(), IsEmpty());
}

TEST_F(NotifierStopping, DestructionWaitsForTheThread) {
    StartAndHold();
    ASSERT_EQ(NotifierStop(notifier), NY_UNEXPECTED);
    const HANDLE thread = ThreadHandle();
    const HANDLE stopEvent = notifier->stopEvent;
    EXPECT_EQ(NotifierDestroy(notifier), NY_OK);
    notifier = nullptr;
    EXPECT_TRUE(IsOpen(stopEvent));
    Continue();
    WaitAndClose(thread);
    EXPECT_FALSE(IsOpen(stopEvent));
    EXPECT_THAT(lines.Lines(), ElementsAre(threadNotStopped, "state 1", threadExiting));
}

TEST_F(NotifierStopping, OnItsOwnThreadFailsAtOnceAndEndsTheThread) {
    WriteVersion("5.7.0");
    StartAndWatch();
    std::chrono::steady_clock::duration duration{};
    onState = [&](uint32_t) {
        onState = nullptr;
        const auto before = std::chrono::steady_clock::now();
        EXPECT_EQ(NotifierStop(notifier), NY_UNEXPECTED);
        duration = std::chrono::steady_clock::now() - before;
        EXPECT_FALSE(NotifierHasEnded(notifier));
    };
    WriteVersion("5.8.0");
    ASSERT_TRUE(lines.WaitFor(threadExiting));
    WaitForThread();
    EXPECT_THAT(lines.Lines(), ElementsAre(Upgraded("5.8.0"), "state 0", threadNotStopped, "state 1", threadExiting));
    EXPECT_LT(duration, std::chrono::seconds(7));
    EXPECT_TRUE(NotifierHasEnded(notifier));
}

// Fails the wait for a thread.
class WaitThatFails {
public:
    explicit WaitThatFails(HANDLE thread) : failing(thread) { current = this; }

private:
    static DWORD WINAPI Wait(HANDLE handle, DWORD milliseconds) {
        return handle == current->failing ? static_cast<DWORD>(WAIT_FAILED)
                                          : current->function.original(handle, milliseconds);
    }

    static inline WaitThatFails* current = nullptr;
    HANDLE failing;
    SystemFunction<decltype(::WaitForSingleObject)> function{&::WaitForSingleObject, &Wait};
};

TEST_F(NotifierStopping, SaysWhenTheWaitItselfFailed) {
    StartAndHold();
    {
        const WaitThatFails failing(notifier->thread);
        EXPECT_EQ(NotifierStop(notifier), NY_UNEXPECTED);
    }
    EXPECT_THAT(lines.Lines(), ElementsAre("2 ny_client: unknown error to stop ny client notifier thread."));
    EXPECT_NE(notifier->thread, nullptr);
}

// The thread has ended all the same.
class WaitThatTimesOut {
public:
    explicit WaitThatTimesOut(HANDLE thread) : waitedFor(thread) { current = this; }

private:
    static DWORD WINAPI Wait(HANDLE handle, DWORD milliseconds) {
        if (handle != current->waitedFor) {
            return current->function.original(handle, milliseconds);
        }
        EXPECT_EQ(current->function.original(handle, static_cast<DWORD>(soon.count())), WAIT_OBJECT_0);
        return static_cast<DWORD>(WAIT_TIMEOUT);
    }

    static inline WaitThatTimesOut* current = nullptr;
    HANDLE waitedFor;
    SystemFunction<decltype(::WaitForSingleObject)> function{&::WaitForSingleObject, &Wait};
};

TEST_F(NotifierStopping, OfAThreadThatEndsAtTheLastMomentIsNoFailure) {
    WriteVersion("5.7.0");
    StartAndWatch();
    {
        const WaitThatTimesOut late(notifier->thread);
        EXPECT_EQ(NotifierStop(notifier), NY_OK);
    }
    EXPECT_THAT(lines.Lines(), ElementsAre(threadExiting, threadNotStopped));
    EXPECT_NE(notifier->thread, nullptr);
    EXPECT_TRUE(NotifierHasEnded(notifier));
}

// It then ends like any other; only a module that unloads the library early is worse off.
TEST_F(NotifierStopping, IsTheSameForAThreadThatCouldNotHoldItsLibrary) {
    WriteVersion("5.7.0");
    {
        const NoLibraryReferences failing;
        StartAndWatch();
    }
    EXPECT_EQ(notifier->library, nullptr);
    EXPECT_EQ(NotifierStop(notifier), NY_OK);
    EXPECT_THAT(lines.Lines(), ElementsAre(threadExiting, threadStopped));
}

TEST_F(NotifierStopping, HasNothingToDoForAThreadThatNeverWas) {
    const NoLibraryReferences failing;
    const NoThreads none;
    EXPECT_EQ(Start(), NY_UNEXPECTED);
    EXPECT_THAT(lines.Lines(), ElementsAre(keyMissingAtCheck, "2 ny_client: failed to start ny client notifier."));
    EXPECT_EQ(NotifierStop(notifier), NY_OK);
    EXPECT_TRUE(NotifierHasEnded(notifier));
}

}  // namespace
