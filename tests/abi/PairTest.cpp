// That a pair is what the table of docs/TESTING.md takes it for.
#include <algorithm>
#include <filesystem>

#include "abi/AbiModuleTest.h"
#include "library/ExpectedExports.h"
#include "library/PeImage.h"
#include "support/ModuleImports.h"
#include "support/OnPurpose.h"

namespace {

std::filesystem::path FolderOf(const char* library) {
    char path[MAX_PATH] = {};
    ::GetModuleFileNameA(::GetModuleHandleA(library), path, MAX_PATH);
    return std::filesystem::path(path).parent_path();
}

TEST(Pair, HasTheModuleAndTheBridgeThatItIsNamedFor) {
    const AbiModule module;
    EXPECT_EQ(module.Call<decltype(ModuleAbi)>("ModuleAbi"), ThisPair().module);
    // An import that only mingw-w64's start-up code of a DLL needs.
    const auto imports = ImportsOf("VsMsgbus.dll");
    const bool isGnu = std::any_of(imports.begin(), imports.end(),
                                   [](const ModuleImport& import) { return import.function == "_amsg_exit"; });
    EXPECT_EQ(isGnu ? "gnu" : "microsoft", ThisPair().bridge);
}

TEST(Pair, StandsTogether) {
    const AbiModule module;
    const auto folder = std::filesystem::path(AbiModule::Path()).parent_path();
    for (const char* library : {"abi_module.dll", "VsMsgbus.dll", "LogLib.dll"}) {
        EXPECT_TRUE(std::filesystem::equivalent(FolderOf(library), folder)) << library << ": " << FolderOf(library);
    }
}

// The members that are exported have a name of each compiler, and whatever it is that was compiled has both.
TEST(Pair, HasABridgeAndALogWithTheContractsExportsAndNoOthers) {
    const AbiModule module;
    const PeImage bridge(::GetModuleHandleA("VsMsgbus.dll"));
    std::vector<std::string> expected(std::begin(expectedExports), std::end(expectedExports));
    if (IsCheckingBridge()) {
        expected.emplace_back("VsMsgbusCheckFindings");
    }
    EXPECT_THAT(bridge.ExportedNames(), testing::UnorderedElementsAreArray(expected));
    const PeImage log(::GetModuleHandleA("LogLib.dll"));
    EXPECT_THAT(log.ExportedNames(), testing::UnorderedElementsAreArray(expectedLogExports));
}

}  // namespace
