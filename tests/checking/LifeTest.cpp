// The checking bridge's findings about Entry, Exit and calls outside them. In a test that says Named the mistake is
// found; in one that says Right there must be no finding, which TearDown checks.
#include <thread>

#include "VsMsgbus.h"
#include "checking/CheckedTest.h"
#include "checking/OwnProcess.h"
#include "support/TaskEnforcer.h"

namespace {

class CheckedLife : public CheckedTest {};

TEST_F(CheckedLife, AnEntryWithoutASinkIsNamed) {
    const Registration registration(id, collector);
    const Product product(id);
    EXPECT_EQ(Found("ENTRY-NO-SINK"), 1U);
}

TEST_F(CheckedLife, AModuleThatIsCalledWhileItEntersIsIn) {
    VsMsgbus* instance = nullptr;
    int calls = 0;
    collector.collect = [&](auto&) {
        ++calls;
        EXPECT_NE(instance, nullptr);
        EXPECT_NE(GetMsgbusClient(), nullptr);
        EXPECT_TRUE(VsMsgbusExit(id.c_str(), instance));
    };
    const Registration registration(id, collector);
    ny_sim_call_in_register(NY_SIM_CALL_PROPERTIES, NY_SIM_ON_SAME_THREAD);
    VsMsgbusEntry(id.c_str(), VsMsgbusServiceProperty, &sink, &instance);
    EXPECT_EQ(calls, 1);
    ny_sim_reset();
}

TEST_F(CheckedLife, AnExitWhileAThreadOfTheModulesFreesACookieIsRight) {
    Event isInside;
    Event mayLeave;
    TaskEnforcer enforcer;
    enforcer.freeCookie = [&] {
        isInside.Set();
        EXPECT_TRUE(mayLeave.Wait());
    };
    const TaskEnforcerRegistration registration(id, enforcer);
    Product product(id, &sink, VsMsgbusServiceTask);
    int cookie = 0;
    std::thread freeing([&] { VsKitMsgbusFreeTaskCookie(wideId.c_str(), &cookie); });
    EXPECT_TRUE(isInside.Wait());
    product.Exit();
    mayLeave.Set();
    freeing.join();
}

TEST_F(CheckedLife, AnExitWhileTheAgentIsInsideACallbackIsNamed) {
    Event isInside;
    Event mayLeave;
    collector.collect = [&](auto&) {
        isInside.Set();
        EXPECT_TRUE(mayLeave.Wait());
    };
    ny_sim_set_impatient(1);
    const Registration registration(id, collector);
    Product product(id, &sink);
    {
        const AgentRequest request(id);
        EXPECT_TRUE(isInside.Wait());
        product.Exit();
        mayLeave.Set();
    }
    ny_sim_reset();
    EXPECT_EQ(Found("EXIT-WHILE-CALLED"), 1U);
    EXPECT_THAT(file.Text(),
                testing::HasSubstr(" still inside CollectProperties: that thread goes on in the module's code. "
                                   "Have the callback end before the product leaves. (thread "));
}

TEST_F(CheckedLife, AnExitThatAwaitsACallbackIsRight) {
    Event isInside;
    collector.collect = [&](auto&) { isInside.Set(); };
    const Registration registration(id, collector);
    Product product(id, &sink);
    const AgentRequest request(id);
    EXPECT_TRUE(isInside.Wait());
    product.Exit();
}

TEST_F(CheckedLife, AnEntryWithoutASinkBesideOneWithASinkIsRight) {
    const Registration registration(id, collector);
    const Registration otherRegistration(id + "other", collector);
    const Product product(id, &sink);
    const Product other(id + "other");
}

TEST_F(CheckedLife, AnEntryThatIsGivenNullIsNamed) {
    EXPECT_FALSE(VsMsgbusEntry(id.c_str(), VsMsgbusServiceProperty, &sink, nullptr));
    EXPECT_EQ(Found("ENTRY-FAILED"), 1U);
}

TEST_F(CheckedLife, AnEntryWhoseServiceTheAgentRefusesIsNamed) {
    ny_sim_fail_call("ny_property_register_provider_callback", 1, 77, NY_SIM_FROM_THEN_ON);
    const Registration registration(id, collector);
    const Product product(id, &sink);
    EXPECT_FALSE(product.IsEntered());
    ny_sim_clear_faults();
    EXPECT_EQ(Found("ENTRY-FAILED"), 1U);
    EXPECT_EQ(OnlyLine(),
              "VsMsgbus check [ENTRY-FAILED] " + id +
                  ": VsMsgbusEntry answers false, because the agent answered 77: the agent has refused a service; the "
                  "product is entered and "
                  "must be left with VsMsgbusExit. Look at the answer of VsMsgbusEntry and at what it wrote "
                  "to outInstance. (thread , in VsMsgbusEntry)");
}

TEST_F(CheckedLife, AnExitOfAnIdThatIsNotInIsNamed) {
    Product product(id, &sink);
    EXPECT_TRUE(VsMsgbusExit((id + "other").c_str(), product.Instance()));
    EXPECT_EQ(Found("EXIT-UNKNOWN"), 1U);
}

TEST_F(CheckedLife, AnExitWithAnotherInstanceIsNamed) {
    const Product product(id, &sink);
    EXPECT_TRUE(VsMsgbusExit(id.c_str(), nullptr));
    EXPECT_EQ(Found("EXIT-OTHER-INSTANCE"), 1U);
}

TEST_F(CheckedLife, AnExitThatTakesTheSinkFromOthersIsNamed) {
    const Registration registration(id, collector);
    const Product stays(id, &sink);
    {
        const Product leaves(id + "other", &sink);
        CheckSoonAfterTheNextChange();
    }
    EXPECT_TRUE(WaitUntil([&] { return Found("SINK-TAKEN") != 0; }));
    EXPECT_THAT(file.Text(),
                testing::HasSubstr("[SINK-TAKEN] " + id + "other: its Exit takes the log sink away, which " + id +
                                   " still needs: "));
}

// A test that waits for the count reads the line after it.
TEST_F(CheckedLife, AFindingCountsOnceItsLineIsWritten) {
    HANDLE reading = nullptr;
    HANDLE writing = nullptr;
    constexpr DWORD lessThanALine = 16;
    ASSERT_TRUE(::CreatePipe(&reading, &writing, nullptr, lessThanALine));
    HANDLE const usual = ::GetStdHandle(STD_ERROR_HANDLE);
    ::SetStdHandle(STD_ERROR_HANDLE, writing);
    std::thread finding([&] { VsMsgbusEntry(id.c_str(), VsMsgbusServiceProperty, &sink, nullptr); });
    char character = 0;
    DWORD size = 0;
    EXPECT_TRUE(::ReadFile(reading, &character, 1, &size, nullptr));
    EXPECT_EQ(Found("ENTRY-FAILED"), 0U) << "while its line is being written";
    while (character != '\n' && ::ReadFile(reading, &character, 1, &size, nullptr) != FALSE) {
    }
    finding.join();
    ::SetStdHandle(STD_ERROR_HANDLE, usual);
    ::CloseHandle(reading);
    ::CloseHandle(writing);
    EXPECT_EQ(Found("ENTRY-FAILED"), 1U);
}

TEST_F(CheckedLife, WhatIsCalledBeforeAnybodyHasEnteredIsNamed) {
    UpdateMsgbusTaskStatus(L"task of nobody", VsKitMsgbus::INYTaskEnforcer::Succeeded);
    VsKitHealthCheckRegisterCB(L"health", [] {});
    EXPECT_EQ(VsKitEnforceLocalPolicy(wideId.c_str()), 0);
    EXPECT_EQ(GetMsgbusClient(), nullptr);
    EXPECT_EQ(Found("NOT-ENTERED"), 4U);
}

TEST_F(CheckedLife, WhatIsCalledBetweenEntryAndExitIsRight) {
    const Registration registration(id, collector);
    const Product product(id, &sink);
    UpdateMsgbusTaskStatus(L"task", VsKitMsgbus::INYTaskEnforcer::Succeeded);
    VsKitHealthCheckRegisterCB(L"health", [] {});
    EXPECT_NE(GetMsgbusClient(), nullptr);
}

TEST_F(CheckedLife, AnEntryUnderTheLoaderLockIsNamed) {
    using Lock = LONG(NTAPI*)(ULONG flags, ULONG * state, ULONG_PTR * cookie);
    using Unlock = LONG(NTAPI*)(ULONG flags, ULONG_PTR cookie);
    const HMODULE system = ::GetModuleHandleA("ntdll.dll");
    const auto lock = reinterpret_cast<Lock>(reinterpret_cast<void*>(::GetProcAddress(system, "LdrLockLoaderLock")));
    const auto unlock =
        reinterpret_cast<Unlock>(reinterpret_cast<void*>(::GetProcAddress(system, "LdrUnlockLoaderLock")));
    const Registration registration(id, collector);
    ULONG_PTR cookie = 0;
    ASSERT_EQ(lock(0, nullptr, &cookie), 0);
    Product product(id, &sink);
    ASSERT_EQ(unlock(0, cookie), 0);
    EXPECT_EQ(Found("LOADER-LOCK"), 1U);
}

// A process that leaves something behind, started by the next two tests: not a test of its own.
TEST(PlantedEnd, DISABLED_LeavesAProductAndACollector) {
    // Never destroyed: the watcher may write until the process is gone.
    auto& sink = *new CapturingSink;
    auto& collector = *new Collector;
    VsMsgbus* instance = nullptr;
    ASSERT_TRUE(VsMsgbusEntry("LEFT1000", VsMsgbusServiceProperty, &sink, &instance));
    ASSERT_TRUE(VsKitMsgbusSetCollectProperties(L"LEFT1000", &collector, nullptr));
}
TEST(PlantedEnd, DISABLED_LeavesNothing) {
    static CapturingSink sink;
    static Collector collector;
    const Registration registration("LEFT1000", collector);
    const Product product("LEFT1000", &sink);
}

TEST_F(CheckedLife, WhatAProcessLeavesBehindIsNamedAtItsEnd) {
    EXPECT_EQ(RunInOwnProcess("PlantedEnd.DISABLED_LeavesAProductAndACollector"), 0);
    EXPECT_THAT(file.Text(),
                testing::HasSubstr("VsMsgbus check [EXIT-MISSING] LEFT1000: it has not left when the process "
                                   "ends: the agent is told nothing, and may call code that is gone. Call "
                                   "VsMsgbusExit on the module's way out. (thread "));
    EXPECT_THAT(
        file.Text(),
        testing::HasSubstr("VsMsgbus check [LEFT-REGISTERED] LEFT1000: its collector, of checking_tests.exe, is "
                           "still registered when the process ends: what calls it late finds nothing. Remove every "
                           "registration on the module's way out. (thread "));
}

TEST_F(CheckedLife, AProcessThatLeavesNothingBehindEndsSilently) {
    EXPECT_EQ(RunInOwnProcess("PlantedEnd.DISABLED_LeavesNothing"), 0);
    EXPECT_EQ(file.Text(), "");
}

TEST_F(CheckedLife, AProcessEndsAtItsFirstFindingWhenItShall) {
    ::SetEnvironmentVariableA("VSMSGBUS_CHECK", "abort");
    EXPECT_EQ(RunInOwnProcess("PlantedEnd.DISABLED_LeavesAProductAndACollector"), 3);
    ::SetEnvironmentVariableA("VSMSGBUS_CHECK", nullptr);
}

}  // namespace
