// Stopping the install watcher while its thread is busy, pauses, or is the caller.
#include <chrono>

#include "msgbus/client/NotifierFixture.h"
#include "msgbus/client/SystemCalls.h"
#include "msgbus/client/ThreadCopy.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class NotifierStopTest : public NotifierFixture {
protected:
    // Leaves the watcher's thread inside the state handler.
    void StartAndHold() {
        notifier->stopTimeout = 1;
        InstallAndWatch();
        UpgradeAndHold("5.8.0");
        EXPECT_THAT(lines.Take(), ElementsAre(Upgraded("5.8.0"), "state 0"));
    }
};

TEST_F(NotifierStopTest, IsPromptWhileTheKeyIsMissing) {
    ASSERT_EQ(Start(), NY_OK);
    ASSERT_TRUE(lines.WaitFor(pausing));
    ASSERT_EQ(notifier->pauseTimeout, 15000U);
    const auto before = std::chrono::steady_clock::now();
    EXPECT_EQ(NotifierStop(notifier), NY_OK);
    EXPECT_LT(std::chrono::steady_clock::now() - before, std::chrono::seconds(7));
    EXPECT_THAT(lines.Lines(),
                ElementsAre(keyMissingAtCheck, threadStarted, keyMissing, pausing, threadExiting, threadStopped));
}

TEST_F(NotifierStopTest, OfAThreadThatDoesNotEndInTimeFailsAndFreesNothing) {
    StartAndHold();
    EXPECT_EQ(NotifierStop(notifier), NY_UNEXPECTED);
    EXPECT_THAT(lines.Take(), ElementsAre(threadNotStopped));
    EXPECT_EQ(notifier->running.load(), 1);
    EXPECT_NE(notifier->thread, nullptr);
    Continue();
    WaitForThread();
    EXPECT_THAT(lines.Lines(), ElementsAre(threadExiting));
    EXPECT_EQ(NotifierStop(notifier), NY_OK);
}

TEST_F(NotifierStopTest, ThatIsDestroyedStaysUntilItsThreadHasEnded) {
    StartAndHold();
    ASSERT_EQ(NotifierStop(notifier), NY_UNEXPECTED);
    const ThreadCopy thread(notifier->thread.get());
    const HANDLE stopEvent = notifier->stopEvent.get();
    EXPECT_EQ(NotifierDestroy(notifier), NY_OK);
    notifier = nullptr;
    EXPECT_TRUE(IsOpen(stopEvent));
    Continue();
    thread.WaitForEnd();
    EXPECT_FALSE(IsOpen(stopEvent));
    EXPECT_THAT(lines.Lines(), ElementsAre(threadNotStopped, threadExiting));
}

TEST_F(NotifierStopTest, OnItsOwnThreadFailsAtOnceAndEndsTheThread) {
    InstallAndWatch();
    std::chrono::steady_clock::duration duration{};
    onState = [&](uint32_t) {
        onState = nullptr;
        const auto before = std::chrono::steady_clock::now();
        EXPECT_EQ(NotifierStop(notifier), NY_UNEXPECTED);
        duration = std::chrono::steady_clock::now() - before;
    };
    WriteVersion("5.8.0");
    ASSERT_TRUE(lines.WaitFor(threadExiting));
    WaitForThread();
    EXPECT_THAT(lines.Lines(), ElementsAre(Upgraded("5.8.0"), "state 0", threadNotStopped, threadExiting));
    EXPECT_LT(duration, std::chrono::seconds(7));
}

// Fails to set one event.
class SetThatFails {
public:
    explicit SetThatFails(HANDLE event) : failing(event) { current = this; }

private:
    static BOOL WINAPI Set(HANDLE event) {
        return event == current->failing ? FALSE : current->function.original(event);
    }

    static inline SetThatFails* current = nullptr;
    HANDLE failing;
    SystemFunction<decltype(::SetEvent)> function{&::SetEvent, &Set};
};

TEST_F(NotifierStopTest, WithoutItsEventEndsTheThreadAsAChangeWould) {
    WriteVersion("5.7.0");
    StartAndWatch();
    {
        const SetThatFails failing(notifier->stopEvent.get());
        EXPECT_EQ(NotifierStop(notifier), NY_OK);
    }
    EXPECT_THAT(lines.Lines(), ElementsAre(threadExiting, threadStopped));
    EXPECT_EQ(notifier->thread, nullptr);
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

TEST_F(NotifierStopTest, SaysWhenTheWaitItselfFailed) {
    StartAndHold();
    {
        const WaitThatFails failing(notifier->thread.get());
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

TEST_F(NotifierStopTest, OfAThreadThatEndsAtTheLastMomentIsNoFailure) {
    InstallAndWatch();
    {
        const WaitThatTimesOut late(notifier->thread.get());
        EXPECT_EQ(NotifierStop(notifier), NY_OK);
    }
    EXPECT_THAT(lines.Lines(), ElementsAre(threadExiting, threadNotStopped));
    EXPECT_NE(notifier->thread, nullptr);
}

TEST_F(NotifierStopTest, SucceedsWhenTheThreadWasNeverStarted) {
    const NoThreads none;
    EXPECT_EQ(Start(), NY_UNEXPECTED);
    EXPECT_THAT(lines.Lines(), ElementsAre(keyMissingAtCheck, "2 ny_client: failed to start ny client notifier."));
    EXPECT_EQ(NotifierStop(notifier), NY_OK);
}

}  // namespace
