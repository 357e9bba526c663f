// The agent is installed, upgraded and removed while the module is in the bridge; the module leaves and is unloaded.
#include <cstdlib>

#include "abi/AbiModuleTest.h"
#include "soak/Level.h"

namespace {

const std::vector<std::string> answered = {"answer 0", "General:Version=1.0"};
const std::vector<std::string> notAsked = {"answer " + std::to_string(NY_SIM_NOT_REGISTERED)};
constexpr const char* registerProvider = "ny_property_register_provider_callback";

class LifeCycle : public AbiTest {
protected:
    void Enter() {
        ASSERT_TRUE(module.Offer("Properties", id));
        ASSERT_TRUE(module.Enter(id, VsMsgbusServiceProperty));
    }
    void Leave() {
        EXPECT_TRUE(module.Exit(id));
        EXPECT_TRUE(module.Withdraw("Properties", id));
    }
};

TEST_F(LifeCycle, FollowsTheAgentFromInstallationToRemoval) {
    environment.Installer().CreateAgentKey();
    Enter();
    EXPECT_EQ(Ask(id), notAsked);
    environment.InstallAgent();
    ASSERT_TRUE(WatcherCalls(registerProvider));
    EXPECT_EQ(Ask(id), answered);
    for (const char* build : {"older", "full"}) {
        ny_sim_clear_calls();
        environment.UpgradeAgent(std::string("5.7.1-") + build, build);
        ASSERT_TRUE(WatcherCalls(registerProvider));
        EXPECT_EQ(LoadedAgentFolder(), environment.Installer().CurrentFolder().filename().string());
        EXPECT_EQ(Ask(id), answered);
    }
    ny_sim_clear_calls();
    environment.Installer().DeleteVersion();
    ASSERT_TRUE(WatcherCalls("ny_client_handler_release"));
    EXPECT_EQ(Ask(id), notAsked);
    EXPECT_EQ(ny_sim_started_clients(), 0U);
    Leave();
}

TEST_F(LifeCycle, EntersAgainAfterEachExit) {
    environment.InstallAgent();
    for (int round = 0; round < 20; ++round) {
        Enter();
        EXPECT_EQ(Ask(id), answered);
        Leave();
        EXPECT_EQ(Ask(id), notAsked);
    }
}

TEST_F(LifeCycle, ExitsInsideItsOwnCallback) {
    environment.InstallAgent();
    Enter();
    module.Call<decltype(ModuleExitWhenAsked)>("ModuleExitWhenAsked", id);
    EXPECT_EQ(Ask(id), answered);
    EXPECT_TRUE(AgentIsLetGo());
    EXPECT_EQ(Ask(id), notAsked);
    EXPECT_TRUE(module.Withdraw("Properties", id));
}

// From its first Entry on the bridge stays in the process; the module does not.
TEST_F(LifeCycle, LosesNothingWhenTheModuleIsLoadedAgainAndAgain) {
    environment.InstallAgent();
    const auto live = [] {
        const AbiModule another;
        ASSERT_TRUE(another.Offer("Properties", "ABI2000"));
        ASSERT_TRUE(another.Enter("ABI2000", VsMsgbusServiceProperty));
        EXPECT_EQ(Ask("ABI2000"), answered);
        EXPECT_TRUE(another.Exit("ABI2000"));
        EXPECT_TRUE(another.Withdraw("Properties", "ABI2000"));
        EXPECT_TRUE(AgentIsLetGo());
    };
    constexpr uint64_t rounds = 30;
    for (uint64_t round = 0; round < rounds; ++round) {
        live();
    }
    const Level before = MeasureLevel();
    for (uint64_t round = 0; round < rounds; ++round) {
        live();
    }
    const Level after = MeasureLevel();
    EXPECT_EQ(after.modules, before.modules);
    EXPECT_LE(after.handles, before.handles + HandleTolerance(rounds));
    EXPECT_LE(after.heapBytes, before.heapBytes + HeapTolerance(rounds));
}

[[noreturn]] void UnloadWithoutHavingEntered() {
    bool wasThere = false;
    {
        const AbiModule module;
        wasThere = ::GetModuleHandleA("VsMsgbus.dll") != nullptr && ::GetModuleHandleA("LogLib.dll") != nullptr;
    }
    const bool isGone = ::GetModuleHandleA("VsMsgbus.dll") == nullptr && ::GetModuleHandleA("LogLib.dll") == nullptr;
    std::exit(wasThere && isGone ? 42 : 1);
}

// In a process of its own, started anew: in this one another test may have entered.
TEST(AbiUnloading, WithoutHavingEnteredTakesTheBridgeOutOfTheProcess) {
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    EXPECT_EXIT(UnloadWithoutHavingEntered(), testing::ExitedWithCode(42), "");
}

[[noreturn]] void EndWithoutLeaving() {
    const AbiModule module;
    const bool isIn = module.Offer("Properties", "ABI1000") && module.Enter("ABI1000", VsMsgbusServiceProperty);
    std::exit(isIn ? 42 : 1);
}

TEST_F(LifeCycle, IsSurvivedByAProcessThatEndsWithoutLeaving) {
    environment.InstallAgent();
    EXPECT_EXIT(EndWithoutLeaving(), testing::ExitedWithCode(42), "");
}

}  // namespace
