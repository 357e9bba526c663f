// The install watcher's creation, start, stop and destruction: codes and lines.
#include "msgbus/client/NotifierFixture.h"
#include "msgbus/client/SystemCalls.h"
#include "support/FailingMemory.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class NyClientNotifierTest : public NotifierFixture {};

bool IsSignalled(HANDLE event) {
    return ::WaitForSingleObject(event, 0) == WAIT_OBJECT_0;
}

TEST_F(NyClientNotifierTest, CreationRefusesNull) {
    NyClientNotifier* created = nullptr;
    EXPECT_EQ(NotifierCreate(nullptr, &created), NY_INVALID_ARGUMENT);
    EXPECT_EQ(created, nullptr);
    EXPECT_EQ(NotifierCreate(&client, nullptr), NY_INVALID_ARGUMENT);
}

TEST_F(NyClientNotifierTest, CreationMakesEventsAndNoThread) {
    EXPECT_EQ(notifier->client, &client);
    EXPECT_EQ(notifier->thread, nullptr);
    EXPECT_EQ(notifier->running.load(), 0);
    EXPECT_EQ(notifier->exitRequested.load(), 0);
    EXPECT_EQ(notifier->waitTimeout, 15000U);
    EXPECT_EQ(notifier->pauseTimeout, 15000U);
    EXPECT_EQ(notifier->stopTimeout, 15000U);
    EXPECT_THAT(notifier->version, testing::Each('\0'));
    for (const HANDLE event : {notifier->stopEvent.get(), notifier->changeEvent.get()}) {
        EXPECT_FALSE(IsSignalled(event));
        ::SetEvent(event);
        EXPECT_TRUE(IsSignalled(event));
        EXPECT_TRUE(IsSignalled(event)) << "reset by the wait";
    }
}

TEST_F(NyClientNotifierTest, CreationWithoutMemoryAnswersSo) {
    NyClientNotifier* created = nullptr;
    const FailingMemory memory;
    EXPECT_EQ(NotifierCreate(&client, &created), NY_OUT_OF_MEMORY);
    EXPECT_EQ(created, nullptr);
}

// Lets so many events be created, and no more.
class EventsRunOut {
public:
    explicit EventsRunOut(size_t eventsLeft) : left(eventsLeft) { current = this; }

    HANDLE made = nullptr;  // the last one

private:
    static HANDLE WINAPI Create(SECURITY_ATTRIBUTES* attributes, WINBOOL isManual, WINBOOL isSet, const char* name) {
        if (current->left == 0) {
            return nullptr;
        }
        --current->left;
        current->made = current->function.original(attributes, isManual, isSet, name);
        return current->made;
    }

    static inline EventsRunOut* current = nullptr;
    size_t left;
    SystemFunction<decltype(::CreateEventA)> function{&::CreateEventA, &Create};
};

TEST_F(NyClientNotifierTest, CreationWithoutEventsAnswersSoAndKeepsNone) {
    for (const size_t events : {size_t{0}, size_t{1}}) {
        NyClientNotifier* created = nullptr;
        const EventsRunOut shortage(events);
        EXPECT_EQ(NotifierCreate(&client, &created), NY_UNEXPECTED);
        EXPECT_EQ(created, nullptr);
        EXPECT_EQ(shortage.made != nullptr, events == 1);
        EXPECT_FALSE(shortage.made != nullptr && IsOpen(shortage.made));
    }
}

TEST_F(NyClientNotifierTest, DestructionAcceptsNullAndClosesTheEvents) {
    EXPECT_EQ(NotifierDestroy(nullptr), NY_OK);
    const HANDLE stopEvent = notifier->stopEvent.get();
    const HANDLE changeEvent = notifier->changeEvent.get();
    EXPECT_EQ(NotifierDestroy(notifier), NY_OK);
    notifier = nullptr;
    EXPECT_FALSE(IsOpen(stopEvent));
    EXPECT_FALSE(IsOpen(changeEvent));
    EXPECT_THAT(lines.Lines(), IsEmpty());
}

TEST_F(NyClientNotifierTest, StartAndStopRefuseNull) {
    EXPECT_EQ(NotifierStart(nullptr), NY_INVALID_ARGUMENT);
    EXPECT_EQ(NotifierStop(nullptr), NY_INVALID_ARGUMENT);
}

TEST_F(NyClientNotifierTest, StopOfOneThatNeverRanIsNoFailureAndSaysNothing) {
    EXPECT_EQ(NotifierStop(notifier), NY_OK);
    EXPECT_THAT(lines.Lines(), IsEmpty());
    EXPECT_FALSE(IsSignalled(notifier->stopEvent.get()));
}

TEST_F(NyClientNotifierTest, StartReportsAnAgentThatIsThereBeforeTheThreadRuns) {
    WriteVersion("5.7.0");
    onState = [this](uint32_t) { EXPECT_EQ(notifier->thread, nullptr); };
    EXPECT_EQ(Start(), NY_OK);
    EXPECT_THAT(lines.Lines(), ElementsAre(Installed("5.7.0"), "state 1", threadStarted));
    EXPECT_STREQ(notifier->version, "5.7.0");
    EXPECT_EQ(notifier->running.load(), 1);
}

TEST_F(NyClientNotifierTest, StartThatIsStoppedAsItFindsTheAgentMakesNoThread) {
    WriteVersion("5.7.0");
    onState = [this](uint32_t) { EXPECT_EQ(NotifierStop(notifier), NY_OK); };
    EXPECT_EQ(Start(), NY_UNEXPECTED);
    EXPECT_THAT(lines.Lines(), ElementsAre(Installed("5.7.0"), "state 1"));
    EXPECT_EQ(notifier->thread, nullptr);
}

TEST_F(NyClientNotifierTest, StopEndsTheThreadAndClosesIt) {
    InstallAndWatch();
    const HANDLE thread = notifier->thread.get();
    EXPECT_EQ(NotifierStop(notifier), NY_OK);
    EXPECT_THAT(lines.Lines(), ElementsAre(threadExiting, threadStopped));
    EXPECT_EQ(notifier->thread, nullptr);
    EXPECT_EQ(notifier->running.load(), 0);
    EXPECT_FALSE(IsOpen(thread));
}

TEST_F(NyClientNotifierTest, ASecondStopDoesNothing) {
    InstallAndWatch();
    ASSERT_EQ(NotifierStop(notifier), NY_OK);
    lines.Take();
    EXPECT_EQ(NotifierStop(notifier), NY_OK);
    EXPECT_THAT(lines.Lines(), IsEmpty());
}

TEST_F(NyClientNotifierTest, ASecondStartKeepsTheThread) {
    InstallAndWatch();
    const HANDLE thread = notifier->thread.get();
    EXPECT_EQ(NotifierStart(notifier), NY_OK);
    EXPECT_THAT(lines.Lines(), ElementsAre("5 ny_client: ny client notifier thread is already running."));
    EXPECT_EQ(notifier->thread.get(), thread);
}

TEST_F(NyClientNotifierTest, StartWithoutAThreadFailsAfterTheAgentWasLookedFor) {
    WriteVersion("5.7.0");
    {
        const NoThreads failing;
        EXPECT_EQ(Start(), NY_UNEXPECTED);
    }
    EXPECT_THAT(lines.Lines(),
                ElementsAre(Installed("5.7.0"), "state 1", "2 ny_client: failed to start ny client notifier."));
    EXPECT_EQ(notifier->running.load(), 0);
    EXPECT_EQ(notifier->thread, nullptr);
    lines.Take();
    EXPECT_EQ(NotifierStop(notifier), NY_OK);
    EXPECT_THAT(lines.Lines(), IsEmpty());
}

}  // namespace
