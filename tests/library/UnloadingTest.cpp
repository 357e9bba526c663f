// The DLL loaded and unloaded at run time, by modules that behave and by others. From its first Entry on it stays in
// the process.
#include <windows.h>

#include <psapi.h>

#include <cstdlib>

#include "VsMsgbus/Entry.h"
#include "VsMsgbus/Information.h"
#include "library/LoadedBridge.h"
#include "soak/Level.h"
#include "support/AgentEnvironment.h"

namespace {

class Unloading : public AgentTest {
protected:
    // Enters the bridge for a product, with no sink.
    static bool Enter(const LoadedBridge& bridge, VsMsgbus** instance) {
        return bridge.Export<decltype(VsMsgbusEntry)>("VsMsgbusEntry")("PRODUCT1000", VsMsgbusServiceProperty, nullptr,
                                                                       instance);
    }

    static bool Leave(const LoadedBridge& bridge, VsMsgbus* instance) {
        return bridge.Export<decltype(VsMsgbusExit)>("VsMsgbusExit")("PRODUCT1000", instance);
    }

    // Enters, unloads without leaving, loads again: the bridge is still there, and can be left.
    static void UnloadWithoutLeaving(const std::function<void()>& meanwhile) {
        LoadedBridge first;
        VsMsgbus* instance = nullptr;
        ASSERT_TRUE(Enter(first, &instance));
        first.Unload();
        EXPECT_TRUE(LoadedBridge::IsInMemory());
        meanwhile();
        LoadedBridge second;
        VsMsgbus* again = nullptr;
        EXPECT_TRUE(Enter(second, &again));
        EXPECT_EQ(again, instance);
        EXPECT_TRUE(Leave(second, again));
    }

    // Loads, enters, makes a call that fails without an agent, leaves and unloads. Returns the library's handle, to be
    // compared alone.
    static HMODULE Live() {
        const LoadedBridge bridge;
        VsMsgbus* instance = nullptr;
        EXPECT_TRUE(Enter(bridge, &instance));
        VsKitMsgbus::lpc_buffer version{};
        EXPECT_EQ(bridge.Export<decltype(VsKitMsgbusGetInformation)>("VsKitMsgbusGetInformation")(
                      VsMsgbusInformationVersion, &version),
                  0);
        EXPECT_TRUE(Leave(bridge, instance));
        return bridge.Module();
    }

    // The next free thread-local index, which grows when one is lost.
    static DWORD NextTlsIndex() {
        const DWORD index = ::TlsAlloc();
        EXPECT_TRUE(::TlsFree(index));
        return index;
    }

    static size_t Modules() {
        HMODULE modules[1024] = {};
        DWORD size = 0;
        EXPECT_TRUE(::EnumProcessModules(::GetCurrentProcess(), modules, sizeof modules, &size));
        return size / sizeof(HMODULE);
    }
};

[[noreturn]] void UnloadWithoutHavingEntered() {
    LoadedBridge bridge;
    const bool wasThere = LoadedBridge::IsInMemory() && LoadedBridge::IsLogInMemory();
    bridge.Unload();
    std::exit(wasThere && !LoadedBridge::IsInMemory() && !LoadedBridge::IsLogInMemory() ? 42 : 1);
}

// In a process of its own, started anew: in this one another test may have entered.
TEST_F(Unloading, WithoutHavingEnteredTakesTheLibraryOutOfTheProcess) {
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    EXPECT_EXIT(UnloadWithoutHavingEntered(), testing::ExitedWithCode(42), "");
}

TEST_F(Unloading, AfterAnEntryLeavesTheLibraryWhichWorksOnWhenItIsLoadedAgain) {
    const HMODULE first = Live();
    EXPECT_TRUE(LoadedBridge::IsInMemory());
    EXPECT_TRUE(LoadedBridge::IsLogInMemory());
    environment.InstallAgent();
    const LoadedBridge again;
    EXPECT_EQ(again.Module(), first);
    VsMsgbus* instance = nullptr;
    ASSERT_TRUE(Enter(again, &instance));
    EXPECT_EQ(ny_sim_started_clients(), 1U);
    EXPECT_TRUE(Leave(again, instance));
}

// All of them with FLOWS_WHOLE=1. What the C++ runtime took at each of so many loads would end the process long before.
TEST_F(Unloading, TenThousandTimesLosesNothing) {
    const int rounds = std::getenv("FLOWS_WHOLE") != nullptr ? 10'000 : 300;
    constexpr int warmUp = 100;
    for (int round = 0; round < warmUp; ++round) {
        Live();
    }
    const DWORD tlsIndexBefore = NextTlsIndex();
    const Level before = MeasureLevel();
    for (int round = 0; round < rounds; ++round) {
        Live();
    }
    const Level after = MeasureLevel();
    EXPECT_EQ(NextTlsIndex(), tlsIndexBefore);
    EXPECT_EQ(after.modules, before.modules);
    EXPECT_LE(after.handles, before.handles + HandleTolerance(static_cast<uint64_t>(rounds)));
    EXPECT_LE(after.heapBytes, before.heapBytes + HeapTolerance(static_cast<uint64_t>(rounds)));
}

TEST_F(Unloading, FiftyTimesLeavesNoModuleBehind) {
    { const LoadedBridge once; }  // brings the libraries that stay loaded
    const size_t before = Modules();
    for (int i = 0; i < 50; ++i) {
        const LoadedBridge bridge;
    }
    EXPECT_EQ(Modules(), before);
}

TEST_F(Unloading, FiftyTimesAfterEntryAndExitLeavesNoModuleBehind) {
    environment.InstallAgent();
    const auto live = [] {
        const LoadedBridge bridge;
        VsMsgbus* instance = nullptr;
        ASSERT_TRUE(Enter(bridge, &instance));
        EXPECT_EQ(ny_sim_started_clients(), 1U);
        ASSERT_TRUE(Leave(bridge, instance));
    };
    live();
    const size_t before = Modules();
    for (int i = 0; i < 50; ++i) {
        live();
    }
    EXPECT_EQ(Modules(), before);
}

TEST_F(Unloading, WithoutLeavingIsSurvivedWhenTheAgentsKeyIsAbsent) {
    UnloadWithoutLeaving([] {});
}

TEST_F(Unloading, WithoutLeavingIsSurvivedWhenTheAgentIsNotInstalled) {
    environment.Installer().CreateAgentKey();
    UnloadWithoutLeaving([] {});
}

TEST_F(Unloading, WithoutLeavingIsSurvivedWhenTheAgentIsInstalledAndThenUpgraded) {
    environment.InstallAgent("5.7.0");
    UnloadWithoutLeaving([this] {
        EXPECT_EQ(ny_sim_started_clients(), 1U);
        environment.UpgradeAgent("5.7.1");
        EXPECT_TRUE(WaitForAgentCalls("ny_property_register_provider_callback", 2));
    });
}

// Has a module enter, and ends the process without leaving.
[[noreturn]] void EndWithoutLeaving(bool unloads) {
    LoadedBridge bridge;
    VsMsgbus* instance = nullptr;
    const bool isEntered = bridge.Export<decltype(VsMsgbusEntry)>("VsMsgbusEntry")(
        "PRODUCT1000", VsMsgbusServiceProperty, nullptr, &instance);
    if (unloads) {
        bridge.Unload();
    }
    std::exit(isEntered ? 42 : 1);
}

TEST_F(Unloading, EndingTheProcessWithoutLeavingIsSurvived) {
    EXPECT_EXIT(EndWithoutLeaving(false), testing::ExitedWithCode(42), "");
    EXPECT_EXIT(EndWithoutLeaving(true), testing::ExitedWithCode(42), "");
}

TEST_F(Unloading, EndingTheProcessWithoutLeavingAnAgentIsSurvived) {
    environment.InstallAgent();
    EXPECT_EXIT(EndWithoutLeaving(false), testing::ExitedWithCode(42), "");
    EXPECT_EXIT(EndWithoutLeaving(true), testing::ExitedWithCode(42), "");
}

}  // namespace
