// Why the bridge has no agent: each cause on a machine of its own. Those that look alike in the bridge's log are told
// apart, and each names path, library and code.
#include <filesystem>

#include "tool/doctor/DoctorTest.h"
#include "tool/doctor/FileChange.h"

using simulator::AgentInstaller;
using testing::HasSubstr;

namespace {

class AgentCauses : public DoctorTest {};

TEST_F(AgentCauses, AreNoneOnAMachineThatIsRight) {
    const DoctorReport report = Examine();
    EXPECT_EQ(report.Status(), 0) << report.Everything();
    EXPECT_FALSE(report.HasCause());
    EXPECT_EQ(report.State("the libraries are unloaded, the process ends"), "good");
    EXPECT_EQ(report.State("\"VSMSGDOC1000\" is registered for updates and withdrawn"), "good");
    EXPECT_THAT(report.Details("ny_client.dll: exports"),
                testing::ElementsAre("121 of the 121 functions that the bridge looks for"));
    EXPECT_THAT(report.Details("the agent's version"),
                testing::ElementsAre("MsgbusVersion: \"5.7.0\", REG_SZ, 6 bytes with the terminator",
                                     "the bridge reads \"5.7.0\" and starts the agent"));
}

TEST_F(AgentCauses, AgentNotInstalled) {
    AgentInstaller::DeleteAgentKey();
    const DoctorReport report = Examine();
    ExpectCause(report, "AGENT-ABSENT", "HKEY_LOCAL_MACHINE\\Software\\Corvane\\Agent is not there (error 2)");
    EXPECT_THAT(report.Remedy(), HasSubstr("Install the agent"));
    EXPECT_EQ(report.State("the agent's version"), "not reached");
    EXPECT_EQ(report.State("a client is created"), "not reached");
}

TEST_F(AgentCauses, VersionAbsent) {
    AgentInstaller::DeleteVersion();
    ExpectCause(Examine(), "VERSION-ABSENT", "MsgbusVersion (error 2)");
}

TEST_F(AgentCauses, VersionEmpty) {
    AgentInstaller::WriteVersion("");
    ExpectCause(Examine(), "VERSION-EMPTY");
}

TEST_F(AgentCauses, VersionLongerThanTheBridgeReads) {
    AgentInstaller::WriteVersion("5.7.0.1234567890123");
    ExpectCause(Examine(), "VERSION-TOO-LONG", "has 20 bytes, and the bridge reads no more than 19");
}

TEST_F(AgentCauses, RuntimePathAbsent) {
    AgentInstaller::DeleteRuntimePath();
    const DoctorReport report = Examine();
    ExpectCause(report, "PATH-ABSENT",
                "RuntimeSdkPath64 in "
                "HKEY_LOCAL_MACHINE\\Software\\Corvane\\Agent\\Applications\\RDXAGENT3000, in the 32-bit view");
    EXPECT_EQ(report.State("ny_client.dll: there"), "not reached");
}

TEST_F(AgentCauses, RuntimePathWrong) {
    AgentInstaller::WriteRuntimePath("C:\\no such folder");
    ExpectCause(Examine(), "PATH-WRONG", "C:\\no such folder is no folder (error 2)");
}

TEST_F(AgentCauses, RuntimePathOfAFile) {
    AgentInstaller::WriteRuntimePath(Library("ny_client.dll"));
    ExpectCause(Examine(), "PATH-WRONG", "(error 267)");
}

TEST_F(AgentCauses, RuntimePathEmptyOrNoWholePath) {
    AgentInstaller::WriteRuntimePath("");
    ExpectCause(Examine(), "PATH-EMPTY");
    AgentInstaller::WriteRuntimePath("agent");
    ExpectCause(Examine(), "PATH-NOT-ABSOLUTE");
}

TEST_F(AgentCauses, RuntimePathLongerThanTheBridgeReads) {
    AgentInstaller::WriteRuntimePath("C:\\" + std::string(600, 'x'));
    ExpectCause(Examine(), "PATH-TOO-LONG", "has 604 bytes");
}

TEST_F(AgentCauses, ClientLibraryMissing) {
    std::filesystem::remove(Library("ny_client.dll"));
    const DoctorReport report = Examine();
    ExpectCause(report, "LIBRARY-MISSING", Library("ny_client.dll").string() + " is missing");
    EXPECT_THAT(report.Text(), HasSubstr("(error 2)"));
    EXPECT_THAT(report.Text(), HasSubstr("there is no agent client"));
    EXPECT_EQ(report.State("ny_variant.dll: exports"), "good");
    EXPECT_EQ(report.State("a client is created"), "not reached");
}

TEST_F(AgentCauses, VariantLibraryMissing) {
    std::filesystem::remove(Library("ny_variant.dll"));
    const DoctorReport report = Examine();
    ExpectCause(report, "LIBRARY-MISSING", Library("ny_variant.dll").string() + " is missing");
    EXPECT_THAT(report.Text(), HasSubstr("there is no text from or to the agent"));
    EXPECT_EQ(report.State("the client is started"), "good");
    EXPECT_EQ(report.State("ny_variant.dll is loaded"), "not reached");
}

TEST_F(AgentCauses, LibraryOfAnotherMachineType) {
    SetMachineOf32Bits(Library("ny_client.dll"));
    const DoctorReport report = Examine();
    ExpectCause(report, "LIBRARY-OF-OTHER-MACHINE",
                Library("ny_client.dll").string() + " is made for another machine type, x86, 32 bits");
    EXPECT_THAT(report.Text(), HasSubstr("(error 193)"));
}

TEST_F(AgentCauses, LibraryThatIsAText) {
    environment.UpgradeAgent("5.8.0", "text");
    ExpectCause(Examine(), "LIBRARY-IS-NONE", Library("ny_client.dll").string() + " is no library of Windows");
}

TEST_F(AgentCauses, LibraryThatIsCutOff) {
    std::filesystem::resize_file(Library("ny_client.dll"), 4096);
    ExpectCause(Examine(), "LIBRARY-INCOMPLETE", "it has 4096 bytes");
}

TEST_F(AgentCauses, LibraryThatNeedsAMissingOne) {
    ReplaceText(Library("ny_client.dll"), "ny_simulator.dll", "no_simulator.dll");
    ExpectCause(Examine(), "LIBRARY-NEEDS-OTHER", "ny_client.dll needs no_simulator.dll, which is found nowhere");
}

TEST_F(AgentCauses, LibrariesWithoutExports) {
    environment.UpgradeAgent("5.8.0", "empty");
    ExpectCause(Examine(), "LIBRARY-WITHOUT-EXPORTS",
                Library("ny_client.dll").string() +
                    " can be loaded, and exports none of the 121 functions that the bridge looks "
                    "for (code 705)");
}

TEST_F(AgentCauses, LibraryThatLacksAnExport) {
    environment.UpgradeAgent("5.8.0", "lacking");
    const DoctorReport report = Examine();
    ExpectCause(report, "LIBRARY-LACKS-EXPORTS",
                Library("ny_client.dll").string() +
                    " does not export ny_property_bag_add_property (code 705): there is no "
                    "collection of properties");
    // A missing function that the bridge can do without is told, and is no finding.
    EXPECT_EQ(report.State("ny_msgbus.dll: exports"), "note");
}

TEST_F(AgentCauses, AgentThatRefusesTheProduct) {
    PlantAgent("refuse register");
    const DoctorReport report = Examine({"--product", "MYAV__1000"});
    ExpectCause(report, "PRODUCT-REFUSED",
                "refuses the product \"MYAV__1000\" for properties: "
                "ny_property_register_provider_callback answers 4711");
    EXPECT_EQ(report.State("\"MYAV__1000\" is registered for policies and withdrawn"), "good");
}

TEST_F(AgentCauses, AgentThatRefusesTheClient) {
    PlantAgent("refuse start");
    ExpectCause(Examine(), "CLIENT-REFUSED", "ny_client_handler_start answers 4711");
}

TEST_F(AgentCauses, AgentThatCrashesEndsOnlyItsTrial) {
    PlantAgent("crash start");
    const DoctorReport report = Examine();
    ExpectCause(report, "AGENT-CRASHES", "exception 0xC0000005 (access violation) in ny_client_handler_start");
    EXPECT_EQ(report.State("a client is created"), "good");
    EXPECT_EQ(report.State("the client is stopped and released"), "not reached");
}

TEST_F(AgentCauses, AgentThatHangsEndsOnlyItsTrial) {
    PlantAgent("hang create");
    const DoctorReport report = Examine({"--wait", "2"});
    ExpectCause(report, "AGENT-HANGS", "ny_client_handler_create has not returned after 2 seconds");
    EXPECT_THAT(report.Everything(), HasSubstr("vsmsgbus: waiting for ny_client_handler_create ..."));
}

}  // namespace
