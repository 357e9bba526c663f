// Agents that are half there or broken: what a load answers, and what it leaves behind.
#include <thread>

#include "dispatcher/DispatcherTest.h"
#include "support/FailingMemory.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class LoadFailure : public DispatcherTest {
protected:
    // A load of `crypto` that could not open `path`.
    Lines LinesOfFailedOpen(const std::string& path, int code) {
        return {LoadStarts("crypto:RDXAGENT3000:ny_client.dll"), Opens(path), OpenFails(code),
                Failed("ny_grouper_add_member library", code), LoadReturns(code)};
    }

    TestGroup<1> crypto{"crypto", "ny_client.dll", {"ny_crypto_name"}};
    TestGroup<1> buffers{"ny_variant", "ny_variant.dll", {"ny_buffer_create"}};
    TestGroup<1> system{"system", "version.dll", {"VerQueryValueW"}};
};

TEST_F(LoadFailure, WithoutARuntimePathOpensTheBareNameWhichMaySucceed) {
    ASSERT_EQ(DispatcherLoad(system.Request()), NY_OK);
    const HMODULE module = ::GetModuleHandleA("version.dll");
    EXPECT_EQ(system.table.load()[0], reinterpret_cast<void*>(::GetProcAddress(module, "VerQueryValueW")));
    EXPECT_THAT(log.Lines(), ElementsAre(LoadStarts("system:RDXAGENT3000:version.dll"), Opens("version.dll"),
                                         Opened(module), loadsTable, Resolves(module, "VerQueryValueW"),
                                         Found(module, "VerQueryValueW"), Resolves(module, "system_get_version"),
                                         NotFound(module, "system_get_version"), LoadReturns(0)));
}

TEST_F(LoadFailure, WithoutARuntimePathAnswersThatNothingIsFound) {
    EXPECT_EQ(DispatcherLoad(crypto.Request()), NY_LIBRARY_LOAD);
    EXPECT_EQ(crypto.table.load(), nullptr);
    EXPECT_EQ(log.Lines(), LinesOfFailedOpen("ny_client.dll", ERROR_MOD_NOT_FOUND));
}

TEST_F(LoadFailure, InAWrongFolderAnswersThatNothingIsFound) {
    environment.Installer().WriteRuntimePath("C:\\there-is-no-such-folder");
    EXPECT_EQ(DispatcherLoad(crypto.Request()), NY_LIBRARY_LOAD);
    EXPECT_EQ(log.Lines(), LinesOfFailedOpen("C:\\there-is-no-such-folder\\ny_client.dll", ERROR_MOD_NOT_FOUND));
}

TEST_F(LoadFailure, OfATextFileAnswersThatItIsNoLibrary) {
    environment.InstallAgent("5.7.0", "text");
    EXPECT_EQ(DispatcherLoad(crypto.Request()), NY_LIBRARY_LOAD);
    EXPECT_EQ(log.Lines(), LinesOfFailedOpen(PathOf("ny_client.dll"), ERROR_BAD_EXE_FORMAT));
}

TEST_F(LoadFailure, LeavesNoLibraryEntryAndTheNextLoadTriesAgain) {
    environment.InstallAgent("5.7.0", "text");
    ASSERT_EQ(DispatcherLoad(crypto.Request()), NY_LIBRARY_LOAD);
    ASSERT_EQ(dispatcher->grouper.members.size(), 1U);
    EXPECT_THAT(dispatcher->grouper.members[0]->libraries, IsEmpty());
    const auto builds = simulator::AgentInstaller::BuildsBesideProgram();
    std::filesystem::copy_file(builds / "full" / "ny_client.dll", FileOf("ny_client.dll"),
                               std::filesystem::copy_options::overwrite_existing);
    EXPECT_EQ(DispatcherLoad(crypto.Request()), NY_OK);
    EXPECT_NE(crypto.table.load(), nullptr);
}

TEST_F(LoadFailure, AProductKeepsItsFolderAsLongAsALibraryOfItIsOpen) {
    environment.InstallAgent("5.6.0");
    const std::string firstFolder = environment.Installer().CurrentFolder().string();
    ASSERT_EQ(DispatcherLoad(crypto.Request()), NY_OK);
    environment.UpgradeAgent("5.7.0");
    log.Take();
    ASSERT_EQ(DispatcherLoad(buffers.Request()), NY_OK);
    EXPECT_EQ(log.Lines()[1], Opens(firstFolder + "\\ny_variant.dll"));
}

TEST_F(LoadFailure, AProductWithoutAnOpenLibraryIsFoundInItsNewFolder) {
    environment.InstallAgent("5.6.0");
    const std::string firstPath = PathOf("ny_client.dll");
    ASSERT_EQ(DispatcherLoad(crypto.Request()), NY_OK);
    environment.UpgradeAgent("5.7.0");
    ASSERT_NE(PathOf("ny_client.dll"), firstPath);
    ASSERT_EQ(DispatcherUnload(agentSoftwareId, "ny_client.dll"), NY_OK);
    log.Take();
    ASSERT_EQ(DispatcherLoad(crypto.Request()), NY_OK);
    EXPECT_EQ(log.Lines()[1], Opens(PathOf("ny_client.dll")));
}

TEST_F(LoadFailure, OfALibraryThatExportsNothingGivesATableOfNulls) {
    environment.InstallAgent("5.7.0", "empty");
    ASSERT_EQ(DispatcherLoad(crypto.Request()), NY_OK);
    const HMODULE module = ModuleOf("ny_client.dll");
    ASSERT_NE(crypto.table.load(), nullptr);
    EXPECT_EQ(crypto.table.load()[0], nullptr);
    EXPECT_THAT(
        log.Lines(),
        ElementsAre(LoadStarts("crypto:RDXAGENT3000:ny_client.dll"), Opens(PathOf("ny_client.dll")), Opened(module),
                    loadsTable, Resolves(module, "ny_crypto_name"), NotFound(module, "ny_crypto_name"),
                    Resolves(module, "crypto_get_version"), NotFound(module, "crypto_get_version"), LoadReturns(0)));
}

TEST_F(LoadFailure, OfAFileNameLongerThanTheScratchBufferNamesItWhole) {
    environment.Installer().WriteRuntimePath("C:\\x");
    const std::string longName(300, 'n');
    crypto.library = longName.c_str();
    EXPECT_EQ(DispatcherLoad(crypto.Request()), NY_LIBRARY_LOAD);
    EXPECT_EQ(log.Lines()[1], Opens("C:\\x\\" + longName));
}

TEST_F(LoadFailure, OfAFolderLongerThanTheScratchBufferNamesItWhole) {
    const std::string longFolder = "C:\\" + std::string(300, 'f');
    environment.Installer().WriteRuntimePath(longFolder);
    EXPECT_EQ(DispatcherLoad(crypto.Request()), NY_LIBRARY_LOAD);
    EXPECT_EQ(log.Lines()[1], Opens(longFolder + "\\ny_client.dll"));
}

TEST_F(LoadFailure, OfMissingArgumentsIsAnsweredWithoutALine) {
    const LoadRequest whole = crypto.Request();
    LoadRequest request = whole;
    request.product = nullptr;
    EXPECT_EQ(DispatcherLoad(request), NY_INVALID_ARGUMENT);
    request = whole;
    request.library = nullptr;
    EXPECT_EQ(DispatcherLoad(request), NY_INVALID_ARGUMENT);
    request = whole;
    request.names = nullptr;
    EXPECT_EQ(DispatcherLoad(request), NY_LIBRARY_LOAD);
    request = whole;
    request.table = nullptr;
    EXPECT_EQ(DispatcherLoad(request), NY_LIBRARY_LOAD);
    request = whole;
    request.count = 0;
    EXPECT_EQ(DispatcherLoad(request), NY_LIBRARY_LOAD);
    EXPECT_EQ(dispatcherOperations.load(dispatcher, request), NY_INVALID_ARGUMENT);
    EXPECT_EQ(dispatcherOperations.load(nullptr, whole), NY_INVALID_ARGUMENT);
    EXPECT_THAT(log.Lines(), IsEmpty());
}

TEST_F(LoadFailure, WithoutADispatcherIsAnsweredWithInvalidArgument) {
    ReleaseDispatcher();
    EXPECT_EQ(DispatcherLoad(crypto.Request()), NY_INVALID_ARGUMENT);
    EXPECT_EQ(DispatcherUnload(agentSoftwareId, "ny_client.dll"), NY_INVALID_ARGUMENT);
}

TEST_F(LoadFailure, ForWantOfMemoryLeavesNothingHalfDoneWhereverItStrikes) {
    environment.InstallAgent();
    ASSERT_EQ(DispatcherSetLogSink(dispatcher, {nullptr, nullptr}), NY_OK);
    size_t failures = 0;
    int32_t result = NY_LIBRARY_LOAD;
    while (result != NY_OK && failures < 100) {
        {
            const FailingMemory none(failures);
            result = DispatcherLoad(crypto.Request());
        }
        failures += result != NY_OK ? 1 : 0;
        EXPECT_EQ(crypto.table.load() != nullptr, result == NY_OK);
        ReleaseDispatcher();
        EXPECT_EQ(crypto.table.load(), nullptr);
        EXPECT_EQ(ModuleOf("ny_client.dll"), nullptr);
        ASSERT_EQ(DispatcherCreate(nullptr, &dispatcher), NY_OK);
    }
    EXPECT_EQ(result, NY_OK);
    EXPECT_GE(failures, 5U);
}

TEST_F(LoadFailure, OfThreadsThatRaceForOneTableIsNone) {
    environment.InstallAgent();
    std::vector<std::thread> threads;
    std::atomic<int> succeeded = 0;
    for (int i = 0; i < 8; ++i) {
        threads.emplace_back([&] { succeeded += DispatcherLoad(crypto.Request()) == NY_OK ? 1 : 0; });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(succeeded, 8);
    const Lines lines = log.Lines();
    EXPECT_EQ(std::count(lines.begin(), lines.end(), loadsTable), 1);
    EXPECT_EQ(std::count(lines.begin(), lines.end(), tableIsThere), 7);
}

}  // namespace
