// The install watcher's waits, shortened: for the first change, and for a key that is missing.
#include "msgbus/client/NotifierFixture.h"
#include "msgbus/client/SystemCalls.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class NotifierWait : public NotifierFixture {
protected:
    // The key's return, written while the watcher is about to pause for the `pauses`th time.
    void InstallAtPause(size_t pauses) {
        onLine = [this, pauses, seen = size_t{0}](const std::string& line) mutable {
            if (line == pausing && ++seen == pauses) {
                WriteVersion("5.7.0");
            }
        };
    }
};

TEST_F(NotifierWait, ReadsAnUnchangedVersionOnceAndThenWaitsForChangesAlone) {
    WriteVersion("5.7.0");
    notifier->waitTimeout = 1;
    const Waits waits(*notifier);
    ASSERT_EQ(Start(), NY_OK);
    ASSERT_TRUE(waits.log.WaitForSize(2));
    EXPECT_THAT(waits.log.Lines(), ElementsAre("1", "infinite"));
    EXPECT_THAT(lines.Lines(), ElementsAre(Installed("5.7.0"), "state 1", threadStarted));
    lines.Take();
    WriteVersion("5.8.0");
    ASSERT_TRUE(waits.log.WaitForSize(3));
    EXPECT_THAT(lines.Lines(), ElementsAre(Upgraded("5.8.0"), "state 0", "state 1"));
    EXPECT_THAT(waits.log.Lines(), ElementsAre("1", "infinite", "infinite"));
    End();
}

// Written after the version was read and before changes are asked for.
TEST_F(NotifierWait, FindsAChangeThatWentByUnseenWhenTheTimeIsOver) {
    WriteVersion("5.7.0");
    notifier->waitTimeout = 1;
    onState = [this](uint32_t) {
        onState = nullptr;
        WriteVersion("5.8.0");
    };
    ASSERT_EQ(Start(), NY_OK);
    ASSERT_TRUE(lines.WaitFor("state 1", 2));
    EXPECT_THAT(lines.Lines(),
                ElementsAre(Installed("5.7.0"), "state 1", threadStarted, Upgraded("5.8.0"), "state 0", "state 1"));
}

TEST_F(NotifierWait, SaysOnceMoreThatThereIsNoAgentWhenTheTimeIsOver) {
    environment.Installer().CreateAgentKey();
    notifier->waitTimeout = 1;
    const Waits waits(*notifier);
    ASSERT_EQ(Start(), NY_OK);
    ASSERT_TRUE(waits.log.WaitForSize(2));
    EXPECT_THAT(waits.log.Lines(), ElementsAre("1", "infinite"));
    EXPECT_THAT(lines.Lines(), ElementsAre(noVersion, threadStarted, noVersion, "state 0"));
    End();
}

// Under Wine nothing tells of the deletion before the time is over.
TEST_F(NotifierWait, FindsTheKeyDeletedWhenTheTimeIsOver) {
    InstallAndWatch();
    UpgradeAndHold("5.8.0");
    ASSERT_EQ(DeleteKey(), ERROR_SUCCESS);
    notifier->waitTimeout = 1;
    Continue();
    ASSERT_TRUE(lines.WaitFor(pausing));
    EXPECT_THAT(lines.Lines(), ElementsAre(Upgraded("5.8.0"), "state 0", "state 1",
                                           "5 ny_client: no msgbus version, agent is not installed, rc(1018)",
                                           "state 0", keyMissing, pausing));
}

TEST_F(NotifierWait, GoesOnAfterAWaitThatFailed) {
    WriteVersion("5.7.0");
    Waits waits(*notifier);
    waits.isFailing = true;
    ASSERT_EQ(Start(), NY_OK);
    ASSERT_TRUE(waits.log.WaitForSize(2));
    EXPECT_THAT(waits.log.Lines(), ElementsAre("15000", "15000"));
    WriteVersion("5.8.0");
    ASSERT_TRUE(lines.WaitFor("state 1", 2));
    EXPECT_THAT(lines.Lines(),
                ElementsAre(Installed("5.7.0"), "state 1", threadStarted, Upgraded("5.8.0"), "state 0", "state 1"));
    End();
}

TEST_F(NotifierWait, LooksForAMissingKeyAfterAPause) {
    notifier->pauseTimeout = 1;
    InstallAtPause(1);
    ASSERT_EQ(Start(), NY_OK);
    ASSERT_TRUE(watches.WaitFor(1));
    EXPECT_THAT(lines.Lines(),
                ElementsAre(keyMissingAtCheck, threadStarted, keyMissing, pausing, Installed("5.7.0"), "state 1"));
    EXPECT_EQ(notifier->running.load(), 1);
}

TEST_F(NotifierWait, LooksForAMissingKeyUntilItIsThere) {
    notifier->pauseTimeout = 1;
    InstallAtPause(3);
    ASSERT_EQ(Start(), NY_OK);
    ASSERT_TRUE(watches.WaitFor(1));
    EXPECT_THAT(lines.Lines(),
                ElementsAre(keyMissingAtCheck, threadStarted, keyMissing, pausing, keyMissingAtCheck, keyMissing,
                            pausing, keyMissingAtCheck, keyMissing, pausing, Installed("5.7.0"), "state 1"));
}

// A pause sets the time for the wait after it, whatever that was.
TEST_F(NotifierWait, ReadsOnceMoreAfterAPause) {
    notifier->pauseTimeout = 2;
    notifier->waitTimeout = INFINITE;
    InstallAtPause(1);
    const Waits waits(*notifier);
    ASSERT_EQ(Start(), NY_OK);
    ASSERT_TRUE(waits.log.WaitForSize(2));
    EXPECT_THAT(waits.log.Lines(), ElementsAre("2", "infinite"));
    End();
}

TEST_F(NotifierWait, FollowsAnUpgradeAfterAPause) {
    notifier->pauseTimeout = 1;
    InstallAtPause(1);
    ASSERT_EQ(Start(), NY_OK);
    ASSERT_TRUE(watches.WaitFor(1));
    lines.Take();
    WriteVersion("5.8.0");
    ExpectStart(Upgraded("5.8.0"));
}

// No system does that.
TEST_F(NotifierWait, EndsAfterAWaitWithoutEndThatTimedOut) {
    WriteVersion("5.7.0");
    notifier->waitTimeout = INFINITE;
    Waits waits(*notifier);
    waits.isTimingOut = true;
    ASSERT_EQ(Start(), NY_OK);
    WaitForThread();
    EXPECT_THAT(lines.Lines(), ElementsAre(Installed("5.7.0"), "state 1", threadStarted, threadExiting));
    EXPECT_THAT(waits.log.Lines(), ElementsAre("infinite"));
    EXPECT_EQ(notifier->running.load(), 0);
    End();
}

TEST_F(NotifierWait, FindsTheAgentAndTellsNothingWithoutAStateHandler) {
    client.stateHandler = nullptr;
    WriteVersion("5.7.0");
    ASSERT_EQ(Start(), NY_OK);
    EXPECT_THAT(lines.Lines(), ElementsAre(Installed("5.7.0"), threadStarted));
}

}  // namespace
