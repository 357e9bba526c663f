// Calling agent functions through their lazy entry points.
#include <algorithm>

#include "dispatcher/DispatcherTest.h"
#include "dispatcher/groups/BufferGroup.h"
#include "dispatcher/groups/MsgbusGroup.h"
#include "dispatcher/groups/PropertyGroup.h"
#include "dispatcher/groups/UpdaterGroup.h"
#include "dispatcher/groups/VariantGroup.h"
#include "support/AgentCalls.h"
#include "values/AgentHandle.h"

// A function that the bridge never calls: its name holds "_init" without being an initialisation.
extern "C" int32_t ny_updater_update_request_set_initiator_type(void* request, int32_t type);

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr EntryPoint<&::ny_updater_update_request_set_initiator_type, updaterNames, updaterGroup> setInitiatorType{};

class EntryPointTest : public DispatcherTest {
protected:
    // How many loads were begun since the last time.
    ptrdiff_t TakeLoads() {
        const Lines lines = log.Take();
        return std::count_if(lines.begin(), lines.end(), [](const std::string& line) {
            return line.starts_with("5 dispatcher: ny_dispatcher_load ") && !line.ends_with("returns <0>") &&
                   line.find("returns <") == std::string::npos;
        });
    }

    // The bytes of a new buffer's size, asked of the agent.
    static size_t SizeOfNewBuffer(size_t size) {
        ny_buffer_t* buffer = nullptr;
        EXPECT_EQ(agent::ny_buffer_create(&buffer, size), NY_OK);
        const unsigned char* data = nullptr;
        size_t answered = 0;
        EXPECT_EQ(agent::ny_buffer_get_raw(buffer, &data, &answered), NY_OK);
        EXPECT_EQ(agent::ny_buffer_release(buffer), NY_OK);
        return answered;
    }
};

TEST_F(EntryPointTest, HandTheArgumentsOnAndTheAnswerBack) {
    environment.InstallAgent();
    EXPECT_EQ(SizeOfNewBuffer(4711), 4711U);
    EXPECT_THAT(AgentCalls(), ElementsAre("ny_buffer_create", "ny_buffer_get_raw", "ny_buffer_release"));
    ASSERT_EQ(ny_sim_fail_call("ny_buffer_create", 1, -12345, NY_SIM_ONCE), NY_OK);
    ny_buffer_t* buffer = nullptr;
    EXPECT_EQ(agent::ny_buffer_create(&buffer, 1), -12345);
}

TEST_F(EntryPointTest, LoadTheirGroupOnceAndThenCallWithoutTheDispatcher) {
    environment.InstallAgent();
    EXPECT_EQ(SizeOfNewBuffer(1), 1U);
    EXPECT_EQ(TakeLoads(), 1);
    EXPECT_EQ(SizeOfNewBuffer(2), 2U);
    EXPECT_THAT(log.Lines(), IsEmpty());
}

TEST_F(EntryPointTest, AnswerFunctionMissingWithoutADispatcher) {
    ReleaseDispatcher();
    environment.InstallAgent();
    EXPECT_EQ(agent::ny_buffer_release(nullptr), NY_FUNCTION_MISSING);
    EXPECT_EQ(agent::ny_variant_init(), NY_FUNCTION_MISSING);
    EXPECT_EQ(agent::ny_variant_deinit(), NY_FUNCTION_MISSING);
}

TEST_F(EntryPointTest, WithoutAnAgentAnswerFunctionMissingAndEveryCallTriesAgain) {
    for (int call = 0; call < 3; ++call) {
        EXPECT_EQ(agent::ny_buffer_release(nullptr), NY_FUNCTION_MISSING);
        EXPECT_EQ(TakeLoads(), 1);
    }
}

TEST_F(EntryPointTest, AddNoLineOfTheirOwnWhenTheFunctionCannotBeReached) {
    EXPECT_EQ(agent::ny_buffer_release(nullptr), NY_FUNCTION_MISSING);
    EXPECT_EQ(log.Lines(),
              (Lines{LoadStarts("ny_variant:RDXAGENT3000:ny_variant.dll"), Opens("ny_variant.dll"),
                     OpenFails(ERROR_MOD_NOT_FOUND), Failed("ny_grouper_add_member library", ERROR_MOD_NOT_FOUND),
                     LoadReturns(ERROR_MOD_NOT_FOUND)}));
}

TEST_F(EntryPointTest, WorkOnceTheAgentsLibrariesStandInItsFolder) {
    environment.InstallAgent("5.7.0", "text");
    EXPECT_EQ(agent::ny_buffer_release(nullptr), NY_FUNCTION_MISSING);
    const auto builds = simulator::AgentInstaller::BuildsBesideProgram();
    std::filesystem::copy_file(builds / "full" / "ny_variant.dll", FileOf("ny_variant.dll"),
                               std::filesystem::copy_options::overwrite_existing);
    EXPECT_EQ(SizeOfNewBuffer(3), 3U);
}

TEST_F(EntryPointTest, WorkOnceAnAbsentAgentIsInstalled) {
    EXPECT_EQ(agent::ny_buffer_release(nullptr), NY_FUNCTION_MISSING);
    environment.InstallAgent();
    EXPECT_EQ(SizeOfNewBuffer(3), 3U);
}

TEST_F(EntryPointTest, WorkOnceAnAgentThatWasLookedForInTheWrongFolderIsInstalled) {
    environment.Installer().WriteRuntimePath("C:\\there-is-no-such-folder");
    EXPECT_EQ(agent::ny_buffer_release(nullptr), NY_FUNCTION_MISSING);
    environment.InstallAgent();
    EXPECT_EQ(SizeOfNewBuffer(3), 3U);
}

TEST_F(EntryPointTest, OfAFunctionThatTheAgentLacksAnswerMissingWhileTheirNeighboursWork) {
    environment.InstallAgent("5.7.0", "lacking");
    EXPECT_EQ(agent::ny_property_bag_add_property(nullptr, "", "", nullptr), NY_FUNCTION_MISSING);
    EXPECT_EQ(agent::ny_property_unregister_provider_callback(nullptr, ""), NY_INVALID_ARGUMENT);
    EXPECT_EQ(agent::ny_msgbus_disable_watcher(nullptr), NY_FUNCTION_MISSING);
    EXPECT_THAT(AgentCalls(), ElementsAre("ny_property_unregister_provider_callback", "ny_msgbus_get_version"));
}

TEST_F(EntryPointTest, AfterAnUpgradeGoToTheAgentOfTheNewDispatcher) {
    environment.InstallAgent("5.6.0", "older");
    EXPECT_EQ(SizeOfNewBuffer(1), 1U);
    const HMODULE older = ModuleOf("ny_variant.dll");
    ASSERT_NE(older, nullptr);
    const std::string olderPath = PathOf("ny_variant.dll");
    ReleaseDispatcher();
    EXPECT_EQ(bufferGroup.table.load(), nullptr);
    environment.UpgradeAgent("5.7.0");
    SetUp();
    EXPECT_EQ(SizeOfNewBuffer(1), 1U);
    EXPECT_EQ(::GetModuleHandleA(olderPath.c_str()), nullptr);
    EXPECT_NE(ModuleOf("ny_variant.dll"), nullptr);
}

TEST_F(EntryPointTest, OfEachSourceHaveAGroupOfTheirOwn) {
    environment.InstallAgent();
    EXPECT_EQ(agent::ny_buffer_release(nullptr), NY_INVALID_ARGUMENT);
    EXPECT_EQ(TakeLoads(), 1);
    ny_buffer_t* buffer = nullptr;
    EXPECT_EQ(agent::ny_buffer_create(&buffer, 1), NY_OK);
    EXPECT_EQ(TakeLoads(), 0);
    BufferOwner owner;
    *owner.Out() = buffer;
    EXPECT_EQ(TakeLoads(), 1);
    EXPECT_EQ(owner.Reset(), NY_OK);
    EXPECT_EQ(DispatcherUnload(agentSoftwareId, "ny_variant.dll"), NY_OK);
    EXPECT_EQ(ModuleOf("ny_variant.dll"), nullptr);
}

TEST_F(EntryPointTest, NamedInitLoadTheGroupOnEveryCall) {
    environment.InstallAgent();
    for (int call = 0; call < 3; ++call) {
        EXPECT_EQ(agent::ny_variant_init(), NY_OK);
        EXPECT_EQ(TakeLoads(), 1);
    }
    EXPECT_THAT(AgentCalls(), ElementsAre("ny_variant_init", "ny_variant_init", "ny_variant_init"));
}

TEST_F(EntryPointTest, NamedInitTryTwiceWithoutAnAgent) {
    EXPECT_EQ(agent::ny_variant_init(), NY_FUNCTION_MISSING);
    EXPECT_EQ(TakeLoads(), 2);
}

TEST_F(EntryPointTest, NamedLikeInitLoadTheGroupOnEveryCallToo) {
    environment.InstallAgent();
    for (int call = 0; call < 2; ++call) {
        EXPECT_EQ(setInitiatorType(nullptr, 1), NY_SIM_NOT_SIMULATED);
        EXPECT_EQ(TakeLoads(), 1);
    }
}

TEST_F(EntryPointTest, NamedDeinitCloseTheLibraryAndTheNextCallOpensItAgain) {
    environment.InstallAgent();
    EXPECT_EQ(agent::ny_variant_init(), NY_OK);
    EXPECT_EQ(SizeOfNewBuffer(1), 1U);
    ASSERT_NE(variantGroup.table.load(), nullptr);
    ASSERT_NE(bufferGroup.table.load(), nullptr);
    const HMODULE module = ModuleOf("ny_variant.dll");
    log.Take();
    EXPECT_EQ(agent::ny_variant_deinit(), NY_OK);
    EXPECT_THAT(log.Take(), ElementsAre(Closes(module)));
    EXPECT_EQ(variantGroup.table.load(), nullptr);
    EXPECT_EQ(bufferGroup.table.load(), nullptr);
    EXPECT_EQ(ModuleOf("ny_variant.dll"), nullptr);
    EXPECT_EQ(agent::ny_variant_release(nullptr), NY_INVALID_ARGUMENT);
    EXPECT_NE(ModuleOf("ny_variant.dll"), nullptr);
    EXPECT_NE(variantGroup.table.load(), nullptr);
}

TEST_F(EntryPointTest, NamedDeinitCloseTheLibraryAlsoWhenTheAgentLacksTheFunction) {
    environment.InstallAgent("5.7.0", "empty");
    EXPECT_EQ(agent::ny_buffer_release(nullptr), NY_FUNCTION_MISSING);
    ASSERT_NE(bufferGroup.table.load(), nullptr);
    const HMODULE module = ModuleOf("ny_variant.dll");
    EXPECT_EQ(agent::ny_variant_deinit(), NY_FUNCTION_MISSING);
    EXPECT_EQ(log.Lines().back(), Closes(module));
    EXPECT_EQ(bufferGroup.table.load(), nullptr);
    EXPECT_EQ(variantGroup.table.load(), nullptr);
}

TEST_F(EntryPointTest, FillTheVersionOfAGroupThatHasOne) {
    environment.InstallAgent("5.6.0", "older");
    EXPECT_EQ(agent::ny_msgbus_disable_watcher(nullptr), NY_INVALID_ARGUMENT);
    EXPECT_EQ(msgbusGroup.version, 0x00050600U);
    ReleaseDispatcher();
    EXPECT_EQ(msgbusGroup.version, 0U);
}

// The last three are what Microsoft's own compiler may say, which could not be tried.
TEST(EntryPointName, IsFoundInWhatACompilerSaysOfTheFunction) {
    for (const char* text : {"function = ny_info_get", "function = &ny_info_get", "NameOf<ny_info_get",
                             "NameOf<int __cdecl ny_info_get(void)",
                             "NameOf<int __cdecl ny_info_get(struct ny_x *,int (__cdecl *)(void *))"}) {
        EXPECT_EQ(entrypoint::NameIn(text), "ny_info_get") << text;
    }
}

}  // namespace
