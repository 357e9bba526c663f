// The install watcher's thread and changes in the registry.
#include "msgbus/client/NotifierFixture.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class NotifierWatchTest : public NotifierFixture {};

TEST_F(NotifierWatchTest, AsksForNamesAndValuesOfTheWholeSubtree) {
    InstallAndWatch();
    EXPECT_THAT(watches.Asked(), ElementsAre("1 5 1"));
}

TEST_F(NotifierWatchTest, ReportsAnAgentThatIsInstalledLater) {
    environment.Installer().CreateAgentKey();
    notifier->waitTimeout = INFINITE;
    ASSERT_EQ(Start(), NY_OK);
    ASSERT_TRUE(watches.WaitFor(1));
    EXPECT_THAT(lines.Take(), ElementsAre(noVersion, threadStarted));
    WriteVersion("5.7.0");
    ExpectStart(Installed("5.7.0"));
}

TEST_F(NotifierWatchTest, ReportsAnUpgradeAsStopAndStart) {
    InstallAndWatch();
    WriteVersion("5.8");
    ExpectStart(Upgraded("5.8"));
}

TEST_F(NotifierWatchTest, ReportsARemovalAndTheNextInstallation) {
    InstallAndWatch();
    environment.Installer().DeleteVersion();
    ASSERT_TRUE(lines.WaitFor("state 0"));
    EXPECT_THAT(lines.Take(), ElementsAre(noVersion, "state 0"));
    WriteVersion("5.8.0");
    ExpectStart(Installed("5.8.0"));
}

TEST_F(NotifierWatchTest, SaysNothingOfChangesThatLeaveTheVersion) {
    InstallAndWatch();
    simulator::RegistryKey(HKEY_LOCAL_MACHINE, "Software\\Corvane\\Agent", KEY_SET_VALUE).WriteText("Other", "text");
    ASSERT_TRUE(watches.WaitFor(2));
    simulator::RegistryKey(HKEY_LOCAL_MACHINE, "Software\\Corvane\\Agent\\Below", KEY_SET_VALUE);
    ASSERT_TRUE(watches.WaitFor(3));
    WriteVersion("5.8.0");
    ExpectStart(Upgraded("5.8.0"));
}

// The second version is written while the watcher's thread waits for no change.
TEST_F(NotifierWatchTest, SeesTheLastOfTwoUpgradesInARow) {
    InstallAndWatch();
    UpgradeAndHold("5.8.0");
    WriteVersion("5.9.0");
    Continue();
    ASSERT_TRUE(lines.WaitFor("state 1", 2));
    EXPECT_THAT(lines.Lines(),
                ElementsAre(Upgraded("5.8.0"), "state 0", "state 1", Upgraded("5.9.0"), "state 0", "state 1"));
}

TEST_F(NotifierWatchTest, SeesARemovalDuringAnUpgrade) {
    InstallAndWatch();
    UpgradeAndHold("5.8.0");
    environment.Installer().DeleteVersion();
    Continue();
    ASSERT_TRUE(lines.WaitFor("state 0", 2));
    EXPECT_THAT(lines.Lines(), ElementsAre(Upgraded("5.8.0"), "state 0", "state 1", noVersion, "state 0"));
}

TEST_F(NotifierWatchTest, TakesAVersionThatIsTooLongAsARemoval) {
    InstallAndWatch();
    WriteVersion("1234567890123456789");
    ASSERT_TRUE(lines.WaitFor("state 0"));
    EXPECT_THAT(lines.Lines(),
                ElementsAre("5 ny_client: no msgbus version, agent is not installed, rc(234)", "state 0"));
}

TEST_F(NotifierWatchTest, TakesAnEmptyVersionAsAnUpgradeAndTheNextAsAnInstallation) {
    InstallAndWatch();
    WriteVersion("");
    ExpectStart(Upgraded(""));
    WriteVersion("5.8.0");
    ExpectStart(Installed("5.8.0"));
}

// Windows signals the deletion of a watched key, Wine does not: here the test does.
TEST_F(NotifierWatchTest, FollowsTheDeletionOfTheKeyAndItsReturn) {
    InstallAndWatch();
    notifier->pauseTimeout = 1;
    onLine = [this](const std::string& line) {
        if (line == pausing) {
            WriteVersion("5.8.0");
        }
    };
    ASSERT_EQ(DeleteKey(), ERROR_SUCCESS);
    ::SetEvent(notifier->changeEvent.get());
    ASSERT_TRUE(lines.WaitFor("state 1"));
    EXPECT_THAT(lines.Lines(), ElementsAre("5 ny_client: no msgbus version, agent is not installed, rc(1018)",
                                           "state 0", keyMissing, pausing, Installed("5.8.0"), "state 1"));
}

// The key is back before the watcher looks: what it holds then is read at once.
TEST_F(NotifierWatchTest, ReadsAKeyThatWasReplaced) {
    InstallAndWatch();
    HoldAtNextState();
    ASSERT_EQ(DeleteKey(), ERROR_SUCCESS);
    ::SetEvent(notifier->changeEvent.get());
    ASSERT_TRUE(WaitUntilHeld());
    WriteVersion("5.8.0");
    Continue();
    ASSERT_TRUE(lines.WaitFor("state 1"));
    EXPECT_THAT(lines.Lines(), ElementsAre("5 ny_client: no msgbus version, agent is not installed, rc(1018)",
                                           "state 0", Installed("5.8.0"), "state 0", "state 1"));
}

TEST_F(NotifierWatchTest, EndsWhenItCannotAskForChanges) {
    WriteVersion("5.7.0");
    watches.AnswerWith(ERROR_ACCESS_DENIED);
    ASSERT_EQ(Start(), NY_OK);
    ASSERT_TRUE(lines.WaitFor(threadExiting));
    EXPECT_THAT(lines.Take(),
                ElementsAre(Installed("5.7.0"), "state 1", threadStarted,
                            "2 ny_client: failed to setup registry Corvane\\Agent\\ monitor, error(5)", threadExiting));
    EXPECT_EQ(notifier->running.load(), 0);
    EXPECT_EQ(NotifierStop(notifier), NY_OK);
    EXPECT_THAT(lines.Lines(), IsEmpty());
}

}  // namespace
