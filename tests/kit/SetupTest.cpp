// The machine of ny_setup.dll, through its C interface.
#include <windows.h>

#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "ny_setup.h"

namespace fs = std::filesystem;

namespace {

constexpr char agentKey[] = "Software\\Corvane\\Agent";
constexpr char applicationKey[] = "Software\\Corvane\\Agent\\Applications\\RDXAGENT3000";

// The text of a value, or what is missing.
std::string ReadText(const char* key, const char* value) {
    char text[1024] = {};
    DWORD size = sizeof text;
    HKEY opened = nullptr;
    if (::RegOpenKeyExA(HKEY_LOCAL_MACHINE, key, 0, KEY_QUERY_VALUE, &opened) != ERROR_SUCCESS) {
        return "(no key)";
    }
    const LSTATUS status = ::RegQueryValueExA(opened, value, nullptr, nullptr, reinterpret_cast<BYTE*>(text), &size);
    ::RegCloseKey(opened);
    return status == ERROR_SUCCESS ? text : "(no value)";
}

std::string Version() {
    return ReadText(agentKey, "MsgbusVersion");
}

std::string RuntimePath() {
    return ReadText(applicationKey, "RuntimeSdkPath64");
}

class Setup : public testing::Test {
protected:
    Setup() { EXPECT_EQ(ny_setup_machine_create(nullptr, &machine), NY_OK) << ny_setup_last_error(); }
    ~Setup() override { EXPECT_EQ(ny_setup_machine_destroy(machine), NY_OK) << ny_setup_last_error(); }

    std::string Folder() const { return ny_setup_current_folder(machine); }

    ny_setup_machine_t* machine = nullptr;
};

TEST_F(Setup, InstallsUpgradesAndRemoves) {
    EXPECT_EQ(Version(), "(no key)");
    EXPECT_EQ(Folder(), "");
    ASSERT_EQ(ny_setup_install(machine, "5.6.0", "older"), NY_OK);
    EXPECT_EQ(Version(), "5.6.0");
    const std::string first = Folder();
    EXPECT_EQ(RuntimePath(), first);
    EXPECT_TRUE(fs::exists(fs::path(first) / "ny_client.dll"));
    ASSERT_EQ(ny_setup_upgrade(machine, "5.7.0", nullptr), NY_OK);
    EXPECT_EQ(Version(), "5.7.0");
    EXPECT_EQ(RuntimePath(), Folder());
    EXPECT_NE(Folder(), first);
    EXPECT_TRUE(fs::exists(first)) << "it may be in use";
    ASSERT_EQ(ny_setup_remove(machine), NY_OK);
    EXPECT_EQ(Version(), "(no value)");
    EXPECT_EQ(RuntimePath(), "(no key)");
    EXPECT_EQ(Folder(), "");
    EXPECT_FALSE(fs::exists(first));
    EXPECT_EQ(ny_setup_remove(machine), NY_OK) << "an agent that is not there counts as removed";
}

TEST_F(Setup, HasTheSingleSteps) {
    EXPECT_EQ(ny_setup_create_agent_key(machine), NY_OK);
    EXPECT_EQ(Version(), "(no value)");
    EXPECT_EQ(ny_setup_write_version(machine, "5.5.0"), NY_OK);
    EXPECT_EQ(Version(), "5.5.0");
    EXPECT_EQ(ny_setup_delete_version(machine), NY_OK);
    EXPECT_EQ(Version(), "(no value)");
    EXPECT_EQ(ny_setup_write_runtime_path(machine, "C:\\nowhere"), NY_OK);
    EXPECT_EQ(RuntimePath(), "C:\\nowhere");
    EXPECT_EQ(ny_setup_delete_runtime_path(machine), NY_OK);
    EXPECT_EQ(RuntimePath(), "(no value)");
    EXPECT_EQ(ny_setup_delete_agent_key(machine), NY_OK);
    EXPECT_EQ(Version(), "(no key)");
    EXPECT_EQ(ny_setup_touch_agent_key(machine), NY_OK);
    EXPECT_EQ(Version(), "(no key)") << "only a key that is there is touched";
    for (const auto step : {&ny_setup_delete_version, &ny_setup_delete_runtime_path, &ny_setup_delete_agent_key}) {
        EXPECT_EQ(step(machine), NY_OK) << "it was not there";
    }
}

TEST_F(Setup, WakesThreadsThatWaitForAChangeOfTheAgentsKey) {
    ASSERT_EQ(ny_setup_write_version(machine, "5.5.0"), NY_OK);
    HKEY key = nullptr;
    ASSERT_EQ(::RegOpenKeyExA(HKEY_LOCAL_MACHINE, agentKey, 0, KEY_NOTIFY, &key), ERROR_SUCCESS);
    const HANDLE changed = ::CreateEventA(nullptr, TRUE, FALSE, nullptr);
    ASSERT_EQ(::RegNotifyChangeKeyValue(key, TRUE, REG_NOTIFY_CHANGE_LAST_SET, changed, TRUE), ERROR_SUCCESS);
    EXPECT_EQ(::WaitForSingleObject(changed, 0), WAIT_TIMEOUT);
    EXPECT_EQ(ny_setup_touch_agent_key(machine), NY_OK);
    EXPECT_EQ(::WaitForSingleObject(changed, 10000), WAIT_OBJECT_0);
    EXPECT_EQ(Version(), "5.5.0");
    ::CloseHandle(changed);
    ::RegCloseKey(key);
}

TEST_F(Setup, IsTheOnlyMachineOfTheProcess) {
    ny_setup_machine_t* other = machine;
    EXPECT_EQ(ny_setup_machine_create(nullptr, &other), NY_SETUP_MACHINE_EXISTS);
    EXPECT_STREQ(ny_setup_last_error(), "this process has a machine: destroy it first");
    EXPECT_EQ(other, machine) << "untouched";
}

TEST_F(Setup, EndsWithWhatWasWritten) {
    ASSERT_EQ(ny_setup_install(machine, "5.7.0", "full"), NY_OK);
    const std::string folder = Folder();
    ASSERT_EQ(ny_setup_machine_destroy(machine), NY_OK);
    EXPECT_FALSE(fs::exists(folder));
    ASSERT_EQ(ny_setup_machine_create(nullptr, &machine), NY_OK);
    EXPECT_EQ(Version(), "(no key)");
}

TEST_F(Setup, TakesTheBuildsOfAnyFolder) {
    const fs::path builds = fs::temp_directory_path() / ("builds-" + std::to_string(::GetCurrentProcessId()));
    ASSERT_EQ(ny_setup_install(machine, "5.7.0", "full"), NY_OK);
    fs::create_directories(builds);
    fs::copy(Folder(), builds / "mine");
    ASSERT_EQ(ny_setup_machine_destroy(machine), NY_OK);
    ASSERT_EQ(ny_setup_machine_create(builds.string().c_str(), &machine), NY_OK);
    EXPECT_EQ(ny_setup_install(machine, "1", "mine"), NY_OK) << ny_setup_last_error();
    EXPECT_EQ(Version(), "1");
    EXPECT_EQ(ny_setup_install(machine, "1", nullptr), NY_SETUP_FAILED) << "there is no build full";
    fs::remove_all(builds);
}

TEST_F(Setup, RefusesWhatIsMissingAndSaysWhat) {
    EXPECT_EQ(ny_setup_machine_create(nullptr, nullptr), NY_INVALID_ARGUMENT);
    EXPECT_STREQ(ny_setup_last_error(), "there is no place for the machine");
    EXPECT_EQ(ny_setup_install(nullptr, "5.7.0", nullptr), NY_INVALID_ARGUMENT);
    EXPECT_STREQ(ny_setup_last_error(), "no machine was given");
    for (const char* const none : {static_cast<const char*>(nullptr), ""}) {
        EXPECT_EQ(ny_setup_install(machine, none, nullptr), NY_INVALID_ARGUMENT);
        EXPECT_STREQ(ny_setup_last_error(), "no version was given");
    }
    EXPECT_EQ(ny_setup_write_version(machine, nullptr), NY_INVALID_ARGUMENT);
    EXPECT_EQ(ny_setup_write_runtime_path(machine, nullptr), NY_INVALID_ARGUMENT);
    EXPECT_STREQ(ny_setup_last_error(), "no folder was given");
    EXPECT_STREQ(ny_setup_current_folder(nullptr), "");
    EXPECT_EQ(ny_setup_machine_destroy(nullptr), NY_OK);
}

TEST_F(Setup, RefusesAFolderThatNotAllProgramsCanRead) {
    EXPECT_EQ(ny_setup_write_runtime_path(machine, "C:\\\xC3\xBC"), NY_SETUP_FAILED);
    EXPECT_STREQ(ny_setup_last_error(),
                 "the agent cannot be installed in a folder whose name is not plain ASCII: C:\\\xC3\xBC");
}

}  // namespace
