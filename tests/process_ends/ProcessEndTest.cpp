// Processes that end without leaving the bridge, with threads inside it: nothing waits for those threads.
#include <cstdlib>
#include <thread>

#include "VsMsgbus.h"
#include "support/AgentFunctions.h"
#include "support/BridgeTest.h"

namespace {

constexpr std::chrono::seconds atOnce{10};  // far below the 15 seconds that the bridge waits at most
constexpr std::chrono::hours forEver{1};

enum class End { ReturnsFromMain, EndsAtOnce };

// Runs in a process of its own, which it ends.
class EndingProcess {
public:
    explicit EndingProcess(End howItEnds) : how(howItEnds) {}

    [[noreturn]] void EndInsideACallback() {
        Block();
        EndNow();
    }

    [[noreturn]] void EndWhileARemoveWaits() {
        Block();
        std::thread([this] {
            isWaiting.Set();
            VsKitMsgbusRemoveCollectProperties(L"PRODUCT1000");
        }).detach();
        isWaiting.Wait();
        EndNow();
    }

    [[noreturn]] void EndWhileAnExitWaits() {
        Block();
        SignalAt(unregisterProvider);
        std::thread([this] { VsMsgbusExit("PRODUCT1000", instance); }).detach();
        isWaiting.Wait();
        EndNow();
    }

    [[noreturn]] void EndInsideTheAgent() {
        Enter();
        HoldUp("ny_info_get");
        std::thread([] {
            VsKitMsgbus::lpc_buffer text{};
            VsKitMsgbusGetInformation(VsMsgbusInformationVersion, &text);
        }).detach();
        isWaiting.Wait();
        EndNow();
    }

    // `change` is a change of the agent's.
    [[noreturn]] void EndWhileTheWatcherStarts(const std::function<void()>& change) {
        Enter();
        HoldUp("ny_client_handler_create");
        change();
        SeenByWatcher([this](auto limit) { return isWaiting.Wait(limit); });
        EndNow();
    }

private:
    void Enter() {
        if (!VsMsgbusEntry("PRODUCT1000", VsMsgbusServiceProperty, nullptr, &instance)) {
            std::_Exit(1);
        }
    }

    // Returns when a thread of the agent's is inside the module, where it stays.
    void Block() {
        Enter();
        collector.collect = [this](VsKitMsgbus::INYCollectProperties::ISet&) {
            isInside.Set();
            never.Wait(forEver);
        };
        VsKitMsgbusSetCollectProperties(L"PRODUCT1000", &collector, nullptr);
        ny_sim_property_request_t* request = nullptr;
        ny_sim_request_properties("PRODUCT1000", &request);
        if (!isInside.Wait()) {
            std::_Exit(2);
        }
    }

    void SignalAt(const char* function) {
        ny_sim_set_hook(
            function, [](const char*, void* self) { static_cast<EndingProcess*>(self)->isWaiting.Set(); }, this);
    }
    void HoldUp(const char* function) {
        ny_sim_set_hook(
            function,
            [](const char*, void* self) {
                static_cast<EndingProcess*>(self)->isWaiting.Set();
                static_cast<EndingProcess*>(self)->never.Wait(forEver);
            },
            this);
    }

    [[noreturn]] void EndNow() {
        if (!isWaiting.IsSet() && !isInside.IsSet()) {
            std::_Exit(3);
        }
        if (how == End::EndsAtOnce) {
            std::_Exit(42);
        }
        std::exit(42);
    }

    const End how;
    VsMsgbus* instance = nullptr;
    Collector collector;
    Event isInside;
    Event isWaiting;
    Event never;
};

class ProcessEnd : public AgentTest, public testing::WithParamInterface<End> {
protected:
    ProcessEnd() { environment.InstallAgent(); }

    // In the process of its own: what it holds must outlive the end of main.
    EndingProcess& Process() const { return *new EndingProcess(GetParam()); }

    // Otherwise something has waited for the threads.
    void TearDown() override { EXPECT_LT(std::chrono::steady_clock::now() - begin, atOnce); }

    const std::chrono::steady_clock::time_point begin = std::chrono::steady_clock::now();
};

TEST_P(ProcessEnd, WithAThreadInsideACallback) {
    EXPECT_EXIT(Process().EndInsideACallback(), testing::ExitedWithCode(42), "");
}

TEST_P(ProcessEnd, WithARemoveThatWaitsForACallback) {
    EXPECT_EXIT(Process().EndWhileARemoveWaits(), testing::ExitedWithCode(42), "");
}

TEST_P(ProcessEnd, WithAnExitThatWaitsForACallback) {
    EXPECT_EXIT(Process().EndWhileAnExitWaits(), testing::ExitedWithCode(42), "");
}

TEST_P(ProcessEnd, WithAThreadInsideTheAgent) {
    EXPECT_EXIT(Process().EndInsideTheAgent(), testing::ExitedWithCode(42), "");
}

TEST_P(ProcessEnd, WithTheWatcherInsideTheAgent) {
    EXPECT_EXIT(Process().EndWhileTheWatcherStarts([this] { environment.UpgradeAgent("5.7.1"); }),
                testing::ExitedWithCode(42), "");
}

INSTANTIATE_TEST_SUITE_P(Process, ProcessEnd, testing::Values(End::ReturnsFromMain, End::EndsAtOnce),
                         [](const auto& end) {
                             return end.param == End::ReturnsFromMain ? "ReturnsFromMain" : "EndsAtOnce";
                         });

}  // namespace
