// The exports, the imports and the version information of the DLLs.
#include <gmock/gmock.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "library/ExpectedExports.h"
#include "library/LoadedBridge.h"
#include "library/PeImage.h"

namespace {

using testing::Contains;
using testing::UnorderedElementsAreArray;

class Image : public testing::Test {
protected:
    // A library's version resource.
    static std::vector<BYTE> VersionResource(const char* library = LoadedBridge::fileName) {
        DWORD ignored = 0;
        std::vector<BYTE> resource(::GetFileVersionInfoSizeA(library, &ignored));
        EXPECT_TRUE(::GetFileVersionInfoA(library, 0, static_cast<DWORD>(resource.size()), resource.data()));
        return resource;
    }

    static std::string VersionText(const std::vector<BYTE>& resource, const std::string& name) {
        void* text = nullptr;
        UINT length = 0;
        const std::string path = "\\StringFileInfo\\040904B0\\" + name;
        return ::VerQueryValueA(resource.data(), path.c_str(), &text, &length) ? static_cast<const char*>(text)
                                                                               : "(none)";
    }

    LoadedBridge bridge;
    PeImage image{bridge.Module()};
    PeImage logImage{::GetModuleHandleA(LoadedBridge::logFileName)};
};

TEST_F(Image, ExportsTheContractsNamesAndNothingElse) {
    EXPECT_THAT(image.ExportedNames(), UnorderedElementsAreArray(expectedExports));
    EXPECT_EQ(image.ExportedFunctions(), std::size(expectedExports));
}

TEST_F(Image, ExportsOneReleaseUnderBothCompilersNames) {
    auto* const release = bridge.Export<void()>("_ZN11VsKitMsgbus10lpc_buffer7ReleaseEv");
    EXPECT_NE(release, nullptr);
    EXPECT_EQ(bridge.Export<void()>("?Release@lpc_buffer@VsKitMsgbus@@QEAAXXZ"), release);
}

TEST_F(Image, ExportsOneFunctionForAllThatIsAlwaysAnsweredWithZero) {
    auto* const function = bridge.Export<int32_t()>("VsKitMsgbusIsRunningInFIPSMode");
    ASSERT_NE(function, nullptr);
    EXPECT_EQ(function(), 0);
    for (const char* const name : {"VsKitMsgbusDecodeData", "VsKitMsgbusEncodeData", "VsKitMsgbusDecodeAndDecryptData",
                                   "VsKitMsgbusEncryptAndEncodeData"}) {
        EXPECT_EQ(bridge.Export<int32_t()>(name), function) << name;
    }
}

TEST_F(Image, NeedsTheHostsLogAndTheSystemsOwnLibrariesOnly) {
    std::vector<std::string> imported = image.ImportedLibraries();
    EXPECT_EQ(std::erase(imported, hostLogLibrary), 1U);
    EXPECT_FALSE(imported.empty());
    for (const std::string& library : imported) {
        EXPECT_THAT(systemLibraries, Contains(library));
    }
}

TEST_F(Image, HasNoTextOfTheChecksThatOnlyTheCheckingBridgeMakes) {
    char path[MAX_PATH] = {};
    ASSERT_NE(::GetModuleFileNameA(bridge.Module(), path, MAX_PATH), 0U);
    std::ifstream file(path, std::ios::binary);
    const std::string bytes(std::istreambuf_iterator<char>(file), {});
    EXPECT_NE(bytes.find("VsKitMsgbusSetCollectProperties"), std::string::npos);
    EXPECT_EQ(bytes.find("VsMsgbus check ["), std::string::npos);
    EXPECT_EQ(bytes.find("VSMSGBUS_TRACE"), std::string::npos);
}

TEST_F(Image, OfTheHostsLogExportsItsContractsNamesAndNothingElse) {
    EXPECT_THAT(logImage.ExportedNames(), UnorderedElementsAreArray(expectedLogExports));
    EXPECT_EQ(logImage.ExportedFunctions(), std::size(expectedLogExports));
}

TEST_F(Image, OfTheHostsLogNeedsTheSystemsOwnLibrariesOnly) {
    for (const std::string& library : logImage.ImportedLibraries()) {
        EXPECT_THAT(systemLibraries, Contains(library));
    }
}

TEST_F(Image, OfTheHostsLogSaysItsName) {
    EXPECT_EQ(VersionText(VersionResource(LoadedBridge::logFileName), "OriginalFilename"), "LogLib.dll");
}

TEST_F(Image, SaysTheProjectsVersion) {
    const std::vector<BYTE> resource = VersionResource();
    void* found = nullptr;
    UINT length = 0;
    ASSERT_TRUE(::VerQueryValueA(resource.data(), "\\", &found, &length));
    const auto& fixed = *static_cast<const VS_FIXEDFILEINFO*>(found);
    EXPECT_EQ(fixed.dwFileVersionMS, MAKELONG(PROJECT_MINOR, PROJECT_MAJOR));
    EXPECT_EQ(fixed.dwFileVersionLS, MAKELONG(0, PROJECT_PATCH));
    EXPECT_EQ(fixed.dwProductVersionMS, fixed.dwFileVersionMS);
    EXPECT_EQ(fixed.dwProductVersionLS, fixed.dwFileVersionLS);
    EXPECT_EQ(fixed.dwFileType, DWORD{VFT_DLL});
}

TEST_F(Image, SaysItsNameAndVersionInWords) {
    const std::vector<BYTE> resource = VersionResource();
    const std::string version =
        std::to_string(PROJECT_MAJOR) + "." + std::to_string(PROJECT_MINOR) + "." + std::to_string(PROJECT_PATCH);
    EXPECT_EQ(VersionText(resource, "FileVersion"), version);
    EXPECT_EQ(VersionText(resource, "ProductVersion"), version);
    EXPECT_EQ(VersionText(resource, "OriginalFilename"), "VsMsgbus.dll");
    EXPECT_EQ(VersionText(resource, "InternalName"), "VsMsgbus");
    EXPECT_EQ(VersionText(resource, "ProductName"), "VsMsgbus");
    EXPECT_EQ(VersionText(resource, "FileDescription"), "Bridge between endpoint modules and the management agent");
}

}  // namespace
