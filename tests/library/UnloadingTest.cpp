// The DLL loaded and unloaded at run time, by modules that behave and by others.
#include <windows.h>

#include <psapi.h>

#include <cstdlib>

#include "VsMsgbus/Entry.h"
#include "library/LoadedBridge.h"
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
        second.Unload();
        EXPECT_FALSE(LoadedBridge::IsInMemory());
    }

    static size_t Modules() {
        HMODULE modules[1024] = {};
        DWORD size = 0;
        EXPECT_TRUE(::EnumProcessModules(::GetCurrentProcess(), modules, sizeof modules, &size));
        return size / sizeof(HMODULE);
    }
};

TEST_F(Unloading, TakesTheLibraryOutOfTheProcess) {
    LoadedBridge bridge;
    EXPECT_TRUE(LoadedBridge::IsInMemory());
    EXPECT_TRUE(LoadedBridge::IsLogInMemory());
    bridge.Unload();
    EXPECT_FALSE(LoadedBridge::IsInMemory());
    EXPECT_FALSE(LoadedBridge::IsLogInMemory());
}

TEST_F(Unloading, FiftyTimesLeavesNoModuleBehind) {
    { const LoadedBridge once; }
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
    EXPECT_FALSE(LoadedBridge::IsInMemory());
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

// What a module does that ends its process without a word.
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
