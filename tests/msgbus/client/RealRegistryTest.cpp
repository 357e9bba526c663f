// The agent's keys in the machine's own HKEY_LOCAL_MACHINE, where its two views differ.
#include "dispatcher/RuntimePath.h"
#include "msgbus/client/NotifierFixture.h"
#include "msgbus/client/NyClientFixture.h"
#include "support/RealRegistry.h"

namespace {

using simulator::RegistryKey;
using testing::ElementsAre;

constexpr char agentKey[] = "Software\\Corvane\\Agent";
constexpr char applicationKey[] = "Software\\Corvane\\Agent\\Applications\\RDXAGENT3000";

class RealRegistryWatch : public NotifierFixture {
protected:
    void SetUp() override {
        if (!RealRegistry::IsExpendable()) {
            GTEST_SKIP() << "this machine's registry is not the tests' to write to";
        }
        NotifierFixture::SetUp();
    }

    RealRegistry registry;
};

TEST_F(RealRegistryWatch, FollowsTheAgentsKey) {
    RegistryKey(HKEY_LOCAL_MACHINE, agentKey, KEY_SET_VALUE | KEY_WOW64_64KEY);
    StartAndWatch();
    RegistryKey(HKEY_LOCAL_MACHINE, agentKey, KEY_SET_VALUE | KEY_WOW64_64KEY).WriteText("MsgbusVersion", "5.7.0");
    ExpectStart(Installed("5.7.0"));
    simulator::DeleteRegistryValue(HKEY_LOCAL_MACHINE, agentKey, "MsgbusVersion", KEY_WOW64_64KEY);
    ASSERT_TRUE(lines.WaitFor("state 0"));
    EXPECT_THAT(lines.Lines(), ElementsAre(noVersion, "state 0"));
}

TEST_F(RealRegistryWatch, DoesNotFindAVersionInThe32BitView) {
    RegistryKey(HKEY_LOCAL_MACHINE, agentKey, KEY_SET_VALUE | KEY_WOW64_32KEY).WriteText("MsgbusVersion", "5.7.0");
    NotifierCheckAgent(notifier);
    EXPECT_THAT(lines.Lines(), ElementsAre(keyMissingAtCheck));
}

TEST_F(RealRegistryWatch, FindsTheVersionInTheProgramsOwnViewOnly) {
    RegistryKey(HKEY_LOCAL_MACHINE, agentKey, KEY_SET_VALUE | KEY_WOW64_32KEY).WriteText("MsgbusVersion", "5.6.0");
    RegistryKey(HKEY_LOCAL_MACHINE, agentKey, KEY_SET_VALUE).WriteText("MsgbusVersion", "5.7.0");
    NotifierCheckAgent(notifier);
    EXPECT_THAT(lines.Lines(), ElementsAre(Installed("5.7.0"), "state 1"));
}

class RealRegistryRuntime : public NyClientFixture {
protected:
    void SetUp() override {
        if (!RealRegistry::IsExpendable()) {
            GTEST_SKIP() << "this machine's registry is not the tests' to write to";
        }
        NyClientFixture::SetUp();
    }

    RealRegistry registry;
    std::optional<std::string> path;
};

TEST_F(RealRegistryRuntime, PathInThe64BitViewAloneIsNotFound) {
    environment.RemoveAgent();
    RegistryKey(HKEY_LOCAL_MACHINE, applicationKey, KEY_SET_VALUE | KEY_WOW64_64KEY)
        .WriteText("RuntimeSdkPath64", "C:\\agent");
    EXPECT_EQ(LookUpRuntimePath("RDXAGENT3000", path), NY_RUNTIME_PATH_MISSING);
    EXPECT_EQ(path, std::nullopt);
}

TEST_F(RealRegistryRuntime, PathInThe32BitViewIsFound) {
    RegistryKey(HKEY_LOCAL_MACHINE, applicationKey, KEY_SET_VALUE | KEY_WOW64_64KEY)
        .WriteText("RuntimeSdkPath64", "C:\\elsewhere");
    RegistryKey(HKEY_LOCAL_MACHINE, applicationKey, KEY_SET_VALUE | KEY_WOW64_32KEY)
        .WriteText("RuntimeSdkPath64", "C:\\agent");
    EXPECT_EQ(LookUpRuntimePath("RDXAGENT3000", path), NY_OK);
    EXPECT_EQ(path, "C:\\agent");
}

TEST_F(RealRegistryRuntime, OfAnInstalledAgentIsUsed) {
    EXPECT_EQ(NyClientStart(client), NY_OK);
    EXPECT_EQ(ny_sim_started_clients(), 1U);
}

TEST_F(RealRegistryRuntime, OfAnAgentThatIsInThe64BitViewAloneIsNotUsed) {
    const std::string folder = environment.Installer().CurrentFolder().string();
    RegistryKey(HKEY_LOCAL_MACHINE, applicationKey, KEY_SET_VALUE | KEY_WOW64_64KEY)
        .WriteText("RuntimeSdkPath64", folder);
    environment.Installer().DeleteRuntimePath();
    EXPECT_EQ(NyClientStart(client), NY_FUNCTION_MISSING);
    RegistryKey(HKEY_LOCAL_MACHINE, applicationKey, KEY_SET_VALUE | KEY_WOW64_32KEY)
        .WriteText("RuntimeSdkPath64", folder);
    // The dispatcher looks up the path once.
    Release();
    client = MakeClient("PRODUCT1000");
    EXPECT_EQ(NyClientStart(client), NY_OK);
}

}  // namespace
