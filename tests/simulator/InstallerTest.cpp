// Installing, upgrading and removing the simulated agent.
#include <algorithm>
#include <filesystem>

#include "Registry.h"
#include "simulator/SimulatorTest.h"

namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;

constexpr char agentKey[] = "Software\\Corvane\\Agent";
constexpr char applicationKey[] = "Software\\Corvane\\Agent\\Applications\\RDXAGENT3000";

// The text of a value, or "(none)".
std::string ReadText(const char* key, const char* value, DWORD view) {
    char text[1024] = {};
    DWORD size = sizeof text;
    HKEY opened = nullptr;
    if (::RegOpenKeyExA(HKEY_LOCAL_MACHINE, key, 0, KEY_QUERY_VALUE | view, &opened) != ERROR_SUCCESS) {
        return "(no key)";
    }
    const LSTATUS status = ::RegQueryValueExA(opened, value, nullptr, nullptr, reinterpret_cast<BYTE*>(text), &size);
    ::RegCloseKey(opened);
    return status == ERROR_SUCCESS ? text : "(no value)";
}

std::string Version() {
    return ReadText(agentKey, "MsgbusVersion", KEY_WOW64_64KEY);
}

std::string RuntimePath() {
    return ReadText(applicationKey, "RuntimeSdkPath64", KEY_WOW64_32KEY);
}

Lines FilesIn(const fs::path& folder) {
    Lines files;
    for (const auto& entry : fs::directory_iterator(folder)) {
        files.push_back(entry.path().filename().string());
    }
    std::sort(files.begin(), files.end());
    return files;
}

class Installer : public AgentTest {
protected:
    simulator::AgentInstaller& installer = environment.Installer();
};

TEST_F(Installer, CopiesTheLibrariesAndWritesBothValues) {
    EXPECT_EQ(Version(), "(no key)");
    installer.Install("5.7.0");
    EXPECT_EQ(Version(), "5.7.0");
    EXPECT_EQ(RuntimePath(), installer.CurrentFolder().string());
    EXPECT_THAT(FilesIn(installer.CurrentFolder()),
                ElementsAre("ny_client.dll", "ny_logger.dll", "ny_msgbus.dll", "ny_simulator.dll", "ny_variant.dll"));
}

TEST_F(Installer, UpgradesIntoANewFolderAndKeepsTheOldOneUntilRemoval) {
    installer.Install("5.6.0", "older");
    const fs::path older = installer.CurrentFolder();
    installer.Upgrade("5.7.0");
    const fs::path newer = installer.CurrentFolder();
    EXPECT_NE(newer, older);
    EXPECT_EQ(Version(), "5.7.0");
    EXPECT_EQ(RuntimePath(), newer.string());
    EXPECT_EQ(FilesIn(older).size(), 5U);
    installer.Remove();
    EXPECT_FALSE(fs::exists(older));
    EXPECT_FALSE(fs::exists(newer));
}

TEST_F(Installer, RemovesTheValuesAndTheApplicationsKeyAndLeavesTheAgentsKey) {
    installer.Install("5.7.0");
    installer.Remove();
    EXPECT_EQ(Version(), "(no value)");
    EXPECT_EQ(RuntimePath(), "(no key)");
    EXPECT_TRUE(installer.CurrentFolder().empty());
    installer.Remove();
    installer.Install("5.7.1");
    EXPECT_EQ(Version(), "5.7.1");
    EXPECT_EQ(FilesIn(installer.CurrentFolder()).size(), 5U);
    installer.Remove();
}

TEST_F(Installer, LeavesFilesInUseToItsEnd) {
    const fs::path target = fs::temp_directory_path() / ("installer-" + std::to_string(::GetCurrentProcessId()));
    fs::path folder;
    {
        simulator::AgentInstaller own(simulator::AgentInstaller::BuildsBesideProgram(), target);
        own.Install("5.7.0");
        folder = own.CurrentFolder();
        {
            const AgentLibraries libraries(folder);
            own.Remove();
            EXPECT_EQ(Version(), "(no value)");
            EXPECT_TRUE(fs::exists(folder / "ny_client.dll"));
        }
    }
    EXPECT_FALSE(fs::exists(folder));
    fs::remove(target);
}

TEST_F(Installer, MakesAgentsThatAreHalfThere) {
    installer.CreateAgentKey();
    EXPECT_EQ(Version(), "(no value)");
    installer.WriteVersion("1");
    EXPECT_EQ(Version(), "1");
    installer.DeleteVersion();
    EXPECT_EQ(Version(), "(no value)");
    installer.WriteRuntimePath("C:\\somewhere");
    EXPECT_EQ(RuntimePath(), "C:\\somewhere");
    installer.DeleteRuntimePath();
    EXPECT_EQ(RuntimePath(), "(no value)");
    installer.DeleteAgentKey();
    EXPECT_EQ(Version(), "(no key)");
    EXPECT_EQ(RuntimePath(), "(no key)");
    installer.DeleteVersion();
    installer.DeleteRuntimePath();
    installer.DeleteAgentKey();
}

TEST_F(Installer, RefusesABuildThatIsNotThereAndAFolderThatIsNotPlain) {
    EXPECT_THROW(installer.Install("5.7.0", "no-such-build"), std::runtime_error);
    EXPECT_THROW(installer.WriteRuntimePath(L"C:\\\u00FCber"), std::runtime_error);
    EXPECT_EQ(Version(), "(no key)");
    EXPECT_EQ(RuntimePath(), "(no key)");
}

}  // namespace
