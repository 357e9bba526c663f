// Libraries of the agent's stay in memory while a thread is inside them.
#include "dispatcher/LibrariesInUse.h"

#include "dispatcher/AgentCalls.h"
#include "dispatcher/DispatcherTest.h"
#include "support/Event.h"

namespace {

class LibrariesInUseTest : public DispatcherTest {
protected:
    void SetUp() override {
        DispatcherTest::SetUp();
        environment.InstallAgent();
    }

    // Waits until the library is unloaded by a thread of the bridge's own.
    bool IsUnloaded(const std::string& path) {
        for (int i = 0; i < 1000 && ::GetModuleHandleA(path.c_str()) != nullptr; ++i) {
            Event().Wait(std::chrono::milliseconds(1));
        }
        return ::GetModuleHandleA(path.c_str()) == nullptr;
    }

    TestGroup<1> crypto{"crypto", "ny_client.dll", {"ny_crypto_name"}};
    TestGroup<1> bus{"ny_msgbus", "ny_msgbus.dll", {"ny_msgbus_run"}};
};

TEST_F(LibrariesInUseTest, AreNoneWithoutADispatcher) {
    ReleaseDispatcher();
    EXPECT_EQ(LibrariesInUse::Share(), nullptr);
}

TEST_F(LibrariesInUseTest, AreThoseThatAreOpenAndThoseOpenedMeanwhile) {
    ASSERT_EQ(DispatcherLoad(crypto.Request()), NY_OK);
    const std::string client = PathOf("ny_client.dll");
    const std::string msgbus = PathOf("ny_msgbus.dll");
    auto inUse = LibrariesInUse::Share();
    EXPECT_EQ(LibrariesInUse::Share(), inUse);
    ASSERT_EQ(DispatcherLoad(bus.Request()), NY_OK);
    EXPECT_TRUE(inUse->AreCurrent());
    ReleaseDispatcher();
    EXPECT_FALSE(inUse->AreCurrent());
    EXPECT_EQ(crypto.table.load(), nullptr) << "nobody else finds them";
    EXPECT_NE(::GetModuleHandleA(client.c_str()), nullptr);
    EXPECT_NE(::GetModuleHandleA(msgbus.c_str()), nullptr);
    inUse.reset();
    EXPECT_EQ(::GetModuleHandleA(client.c_str()), nullptr);
    EXPECT_EQ(::GetModuleHandleA(msgbus.c_str()), nullptr);
}

TEST_F(LibrariesInUseTest, KeepNoOtherAgentFromBeingLoaded) {
    ASSERT_EQ(DispatcherLoad(crypto.Request()), NY_OK);
    const std::string old = PathOf("ny_client.dll");
    auto inUse = LibrariesInUse::Share();
    ReleaseDispatcher();
    environment.UpgradeAgent("5.7.1");
    ASSERT_EQ(DispatcherCreate(nullptr, &dispatcher), NY_OK);
    ASSERT_EQ(DispatcherLoad(crypto.Request()), NY_OK);
    EXPECT_NE(ModuleOf("ny_client.dll"), nullptr);
    EXPECT_NE(::GetModuleHandleA(old.c_str()), ModuleOf("ny_client.dll"));
    EXPECT_NE(LibrariesInUse::Share(), inUse);
    inUse.reset();
    EXPECT_EQ(::GetModuleHandleA(old.c_str()), nullptr);
}

// Such a thread returns into the library.
TEST_F(LibrariesInUseTest, AreUnloadedOnAnotherThreadWhenAThreadOfTheAgentsIsTheLastOneOut) {
    ASSERT_EQ(DispatcherLoad(crypto.Request()), NY_OK);
    const std::string client = PathOf("ny_client.dll");
    AdmitAgentCalls(CallData<LibrariesInUseTest>(this), {}, LibrariesInUse::Share(), this);
    {
        const AgentCall call(CallData<LibrariesInUseTest>(this), {});
        ASSERT_TRUE(call);
        ForgetAgentCalls(this);
        ReleaseDispatcher();
        EXPECT_NE(::GetModuleHandleA(client.c_str()), nullptr);
    }
    EXPECT_TRUE(IsUnloaded(client));
}

}  // namespace
