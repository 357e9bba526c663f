// The builds of the simulated agent.
#include <algorithm>
#include <set>

#include "dispatcher/ExpectedGroups.h"
#include "simulator/SimulatorTest.h"

namespace {

const ExpectedGroup* const groups[] = {
    &expectedBufferGroup,    &expectedVariantGroup,       &expectedPropertyGroup, &expectedPolicyGroup,
    &expectedSchedulerGroup, &expectedUpdaterGroup,       &expectedCryptoGroup,   &expectedInfoGroup,
    &expectedMsgbusGroup,    &expectedClientHandlerGroup, &expectedLoggerGroup,
};

class Builds : public AgentTest {
protected:
    HMODULE Load(const std::string& library) {
        return ::LoadLibraryExA((environment.Installer().CurrentFolder() / library).string().c_str(), nullptr,
                                LOAD_WITH_ALTERED_SEARCH_PATH);
    }

    // The names of all groups that their library does not export.
    std::set<std::string> Missing() {
        std::set<std::string> missing;
        for (const ExpectedGroup* group : groups) {
            const HMODULE module = Load(group->library);
            EXPECT_NE(module, nullptr);
            for (const std::string& function : group->functions) {
                if (::GetProcAddress(module, function.c_str()) == nullptr) {
                    missing.insert(function);
                }
            }
            ::FreeLibrary(module);
        }
        return missing;
    }

    uint32_t Version() {
        const AgentLibraries libraries(environment.Installer().CurrentFolder());
        uint32_t version = 0;
        const FARPROC address = libraries.Find("ny_msgbus_get_version");
        EXPECT_EQ(reinterpret_cast<decltype(&ny_msgbus_get_version)>(reinterpret_cast<void*>(address))(&version),
                  NY_OK);
        return version;
    }
};

TEST_F(Builds, FullAndOlderExportEveryNameAndSayTheirVersions) {
    environment.InstallAgent("5.7.0", "full");
    EXPECT_THAT(Missing(), testing::IsEmpty());
    EXPECT_EQ(Version(), 0x00050700U);
    environment.UpgradeAgent("5.6.0", "older");
    EXPECT_THAT(Missing(), testing::IsEmpty());
    EXPECT_EQ(Version(), 0x00050600U);
}

TEST_F(Builds, LackingLacksTheNamesItIsConfiguredForAndNoOther) {
    environment.InstallAgent("5.7.0", "lacking");
    const std::string configured = LACKING_NAMES;
    std::set<std::string> names;
    for (size_t begin = 0; begin < configured.size();) {
        const size_t end = std::min(configured.find(' ', begin), configured.size());
        names.insert(configured.substr(begin, end - begin));
        begin = end + 1;
    }
    EXPECT_FALSE(names.empty());
    EXPECT_EQ(Missing(), names);
}

TEST_F(Builds, EmptyIsLoadedAndExportsNothing) {
    environment.InstallAgent("5.7.0", "empty");
    size_t names = 0;
    for (const ExpectedGroup* group : groups) {
        names += group->functions.size();
    }
    // No name stands in two groups.
    EXPECT_EQ(Missing().size(), names);
}

TEST_F(Builds, TextIsNoLibrary) {
    environment.InstallAgent("5.7.0", "text");
    for (const ExpectedGroup* group : groups) {
        EXPECT_EQ(Load(group->library), nullptr);
        EXPECT_EQ(::GetLastError(), DWORD{ERROR_BAD_EXE_FORMAT});
    }
}

}  // namespace
