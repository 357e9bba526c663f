// The registry contents that the install watcher takes for an installed agent.
#include <cstring>
#include <string_view>

#include "msgbus/client/NotifierFixture.h"
#include "msgbus/client/SystemCalls.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class NotifierCheck : public NotifierFixture {
protected:
    void WriteRaw(DWORD type, std::string_view data) {
        environment.Installer().CreateAgentKey();
        const simulator::RegistryKey key(HKEY_LOCAL_MACHINE, "Software\\Corvane\\Agent", KEY_SET_VALUE);
        ASSERT_EQ(::RegSetValueExA(key.Get(), "MsgbusVersion", 0, type, reinterpret_cast<const BYTE*>(data.data()),
                                   static_cast<DWORD>(data.size())),
                  ERROR_SUCCESS);
    }
};

TEST_F(NotifierCheck, WithoutTheKeySaysSo) {
    EXPECT_EQ(NotifierCheckAgent(notifier), NY_OK);
    EXPECT_THAT(lines.Lines(), ElementsAre(keyMissingAtCheck));
}

TEST_F(NotifierCheck, WithoutAVersionTakesTheAgentAsNotInstalled) {
    environment.Installer().CreateAgentKey();
    std::strcpy(notifier->version, "5.6.0");
    EXPECT_EQ(NotifierCheckAgent(notifier), NY_OK);
    EXPECT_THAT(lines.Lines(), ElementsAre(noVersion));
    EXPECT_THAT(notifier->version, testing::Each('\0'));
}

TEST_F(NotifierCheck, ReportsAVersionAndForgetsTheOneBefore) {
    WriteVersion("5.7");
    std::strcpy(notifier->version, "a longer version");
    EXPECT_EQ(NotifierCheckAgent(notifier), NY_OK);
    EXPECT_THAT(lines.Lines(), ElementsAre(Installed("5.7"), "state 1"));
    EXPECT_STREQ(notifier->version, "5.7");
    EXPECT_STREQ(notifier->version + 4, "") << "left of the one before";
}

TEST_F(NotifierCheck, ReportsAnUnchangedVersionEachTime) {
    WriteVersion("5.7.0");
    NotifierCheckAgent(notifier);
    lines.Take();
    NotifierCheckAgent(notifier);
    EXPECT_THAT(lines.Lines(), ElementsAre(Installed("5.7.0"), "state 1"));
}

TEST_F(NotifierCheck, ReadsAVersionOf18CharactersAndNoLongerOne) {
    const std::string longest = "123456789012345678";
    WriteVersion(longest);
    NotifierCheckAgent(notifier);
    EXPECT_THAT(lines.Take(), ElementsAre(Installed(longest), "state 1"));
    for (const char* const rest : {"9", "90", "901234567890"}) {
        WriteVersion(longest + rest);
        NotifierCheckAgent(notifier);
        EXPECT_THAT(lines.Take(), ElementsAre("5 ny_client: no msgbus version, agent is not installed, rc(234)"));
        EXPECT_THAT(notifier->version, testing::Each('\0'));
    }
}

TEST_F(NotifierCheck, SaysNothingOfAnEmptyVersion) {
    WriteVersion("");
    std::strcpy(notifier->version, "5.6.0");
    EXPECT_EQ(NotifierCheckAgent(notifier), NY_OK);
    EXPECT_THAT(lines.Lines(), IsEmpty());
    EXPECT_STREQ(notifier->version, "5.6.0");
}

// The value's type is not asked for: its bytes count.
TEST_F(NotifierCheck, ReadsAVersionThatIsNoText) {
    WriteRaw(REG_DWORD, std::string_view("5.7\0", 4));
    NotifierCheckAgent(notifier);
    EXPECT_THAT(lines.Take(), ElementsAre(Installed("5.7"), "state 1"));
    WriteRaw(REG_BINARY, std::string_view("5.8\0rest", 8));
    NotifierCheckAgent(notifier);
    EXPECT_THAT(lines.Take(), ElementsAre(Installed("5.8"), "state 1"));
    EXPECT_THAT(std::string_view(notifier->version + 4, 16), testing::Each('\0'));
}

TEST_F(NotifierCheck, ReadsAVersionThatIsNotTerminated) {
    WriteRaw(REG_BINARY, "1234567890123456789");
    NotifierCheckAgent(notifier);
    EXPECT_THAT(lines.Take(), ElementsAre(Installed("1234567890123456789"), "state 1"));
}

TEST_F(NotifierCheck, AsksForTheKeyForReadingInNoParticularView) {
    WriteVersion("5.7.0");
    const Questions questions;
    NotifierCheckAgent(notifier);
    EXPECT_THAT(questions.asked.Lines(), ElementsAre("HKLM Software\\Corvane\\Agent\\ 131097", "MsgbusVersion 19"));
}

}  // namespace
