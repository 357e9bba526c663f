// Where the agent's libraries stand, by the registry.
#include "dispatcher/RuntimePath.h"

#include "Registry.h"
#include "support/AgentEnvironment.h"
#include "support/FailingMemory.h"
#include "support/SystemFunction.h"

namespace {

const std::string applications = "Software\\Corvane\\Agent\\Applications\\";

class RuntimePath : public AgentTest {
protected:
    // Writes the value with exactly these bytes.
    static void WriteValue(const std::string& product, const std::string& bytes, DWORD type = REG_SZ) {
        const simulator::RegistryKey key(HKEY_LOCAL_MACHINE, applications + product, KEY_SET_VALUE | KEY_WOW64_32KEY);
        ASSERT_EQ(::RegSetValueExA(key.Get(), "RuntimeSdkPath64", 0, type, reinterpret_cast<const BYTE*>(bytes.data()),
                                   static_cast<DWORD>(bytes.size())),
                  ERROR_SUCCESS);
    }

    std::optional<std::string> path = "from before";
};

// How the registry was asked.
struct Opened {
    HKEY parent;
    std::string key;
    REGSAM access;
} opened;

LSTATUS WINAPI NoteAndRefuse(HKEY parent, LPCSTR key, DWORD, REGSAM access, PHKEY) {
    opened = {parent, key, access};
    return ERROR_ACCESS_DENIED;
}

TEST_F(RuntimePath, IsLookedForInThe32BitViewOfTheRegistry) {
    const SystemFunction<decltype(::RegOpenKeyExA)> replaced(&::RegOpenKeyExA, &NoteAndRefuse);
    EXPECT_EQ(LookUpRuntimePath("RDXAGENT3000", path), NY_RUNTIME_PATH_MISSING);
    EXPECT_EQ(opened.parent, HKEY_LOCAL_MACHINE);
    EXPECT_EQ(opened.key, "Software\\Corvane\\Agent\\Applications\\RDXAGENT3000");
    EXPECT_EQ(opened.access, REGSAM{0x20219});
}

TEST_F(RuntimePath, AnswersOutOfMemory) {
    environment.InstallAgent();
    for (size_t allocations = 0; allocations < 2; ++allocations) {
        int32_t result = NY_OK;
        {
            const FailingMemory none(allocations);
            result = LookUpRuntimePath("RDXAGENT3000", path);
        }
        EXPECT_EQ(result, NY_OUT_OF_MEMORY) << allocations;
        EXPECT_EQ(path, std::nullopt);
    }
}

TEST_F(RuntimePath, IsTheValueOfTheProductsKey) {
    WriteValue("PRODUCT1000", std::string("C:\\one\0", 7));
    WriteValue("PRODUCT2000", std::string("C:\\two\0", 7));
    EXPECT_EQ(LookUpRuntimePath("PRODUCT2000", path), NY_OK);
    EXPECT_EQ(path, "C:\\two");
}

TEST_F(RuntimePath, IsReadWhereTheAgentIsInstalled) {
    environment.InstallAgent();
    EXPECT_EQ(LookUpRuntimePath("RDXAGENT3000", path), NY_OK);
    EXPECT_EQ(path, environment.Installer().CurrentFolder().string());
}

TEST_F(RuntimePath, IsMissingWithoutAKeyOrAValue) {
    EXPECT_EQ(LookUpRuntimePath("RDXAGENT3000", path), NY_RUNTIME_PATH_MISSING);
    EXPECT_EQ(path, std::nullopt);
    environment.InstallAgent();
    environment.Installer().DeleteRuntimePath();
    path = "from before";
    EXPECT_EQ(LookUpRuntimePath("RDXAGENT3000", path), NY_RUNTIME_PATH_MISSING);
    EXPECT_EQ(path, std::nullopt);
}

TEST_F(RuntimePath, NeedsAProduct) {
    EXPECT_EQ(LookUpRuntimePath(nullptr, path), NY_INVALID_ARGUMENT);
    EXPECT_EQ(path, std::nullopt);
}

TEST_F(RuntimePath, MayStandInTheRegistryWithoutATerminator) {
    WriteValue("PRODUCT1000", "C:\\unterminated");
    EXPECT_EQ(LookUpRuntimePath("PRODUCT1000", path), NY_OK);
    EXPECT_EQ(path, "C:\\unterminated");
}

TEST_F(RuntimePath, EndsAtItsFirstZero) {
    WriteValue("PRODUCT1000", std::string("C:\\one\0two\0", 11));
    EXPECT_EQ(LookUpRuntimePath("PRODUCT1000", path), NY_OK);
    EXPECT_EQ(path, "C:\\one");
}

TEST_F(RuntimePath, MayBeEmpty) {
    WriteValue("PRODUCT1000", std::string(1, '\0'));
    EXPECT_EQ(LookUpRuntimePath("PRODUCT1000", path), NY_OK);
    EXPECT_EQ(path, "");
}

TEST_F(RuntimePath, OfFiveHundredAndElevenCharactersIsReadAndALongerOneIsMissing) {
    const std::string longest = "C:\\" + std::string(508, 'p');
    WriteValue("PRODUCT1000", longest + '\0');
    EXPECT_EQ(LookUpRuntimePath("PRODUCT1000", path), NY_OK);
    EXPECT_EQ(path, longest);
    WriteValue("PRODUCT1000", longest + 'p' + '\0');
    EXPECT_EQ(LookUpRuntimePath("PRODUCT1000", path), NY_RUNTIME_PATH_MISSING);
    EXPECT_EQ(path, std::nullopt);
}

TEST_F(RuntimePath, OfAVeryLongProductIsMissing) {
    EXPECT_EQ(LookUpRuntimePath(std::string(5000, 'P').c_str(), path), NY_RUNTIME_PATH_MISSING);
}

}  // namespace
