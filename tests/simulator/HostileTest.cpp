// The ways of a hostile agent: one lock, callbacks inside register, late calls, impatience.
#include <functional>
#include <thread>

#include "simulator/SimulatorTest.h"
#include "support/AgentRequest.h"
#include "support/AllCallbacks.h"
#include "support/Checkpoint.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* product = "PRODUCT1000";
constexpr uint32_t limit = static_cast<uint32_t>(soon.count());

// A product that registers for everything, and is told by the test what to do in its callbacks.
class Product {
public:
    static int32_t Provide(ny_client_t* client, const char* productId, ny_property_bag_t* /*bag*/, void* data) {
        return static_cast<Product*>(data)->Take("properties", client, productId);
    }
    static int32_t TakePolicy(ny_client_t* client, const char* productId, ny_policy_uri_t* uri, void* data) {
        return static_cast<Product*>(data)->Take(uri != nullptr ? "policy" : "policy without a uri", client, productId);
    }
    template <char operation>
    static int32_t DoTask(ny_client_t* client, const char* productId, const char* taskType, ny_task_t* task,
                          void* data) {
        const char* id = nullptr;
        EXPECT_EQ(task->methods->get_id(task, &id), NY_OK);
        return static_cast<Product*>(data)->Take(
            std::string("task ") + operation + " " + id + " " + (taskType != nullptr ? taskType : "null"), client,
            productId);
    }
    static int32_t Notify(ny_client_t* client, const char* productId, const char* second, const char* third,
                          uint32_t /*number*/, const char* fourth, int32_t* /*result*/, void* data) {
        return static_cast<Product*>(data)->Take(std::string("notify ") + second + " " + third + " " + fourth, client,
                                                 productId);
    }
    static int32_t SetInfo(ny_client_t* client, const char* productId, const char* second, const char* key,
                           ny_variant_t* value, int32_t* /*result*/, void* data) {
        return static_cast<Product*>(data)->Take(
            std::string("set ") + second + " " + key + (value != nullptr ? "" : " without a value"), client, productId);
    }
    static int32_t GetInfo(ny_client_t* client, const char* productId, const char* second, const char* key,
                           ny_variant_t** out, int32_t* /*result*/, void* data) {
        return static_cast<Product*>(data)->Take(
            std::string("get ") + second + " " + key + (out != nullptr ? "" : " without an out"), client, productId);
    }
    static int32_t TakeEvent(ny_client_t* client, const char* productId, const ny_updater_event_t* event, void* data) {
        return static_cast<Product*>(data)->Take(event != nullptr ? "event" : "event without an event", client,
                                                 productId);
    }
    static int32_t Hear(uint32_t severity, const char* module, const char* message, void* data) {
        return static_cast<Product*>(data)->Take(std::to_string(severity) + " " + module + " " + message, nullptr,
                                                 "log");
    }

    std::function<void()> inCallback = [] {};
    Lines lines;
    ny_client_t* client = nullptr;
    DWORD threadId = 0;

private:
    int32_t Take(const std::string& line, ny_client_t* calledClient, const char* productId) {
        lines.push_back(line + " of " + productId);
        client = calledClient;
        threadId = ::GetCurrentThreadId();
        inCallback();
        return 70;
    }
};

constexpr ny_task_callbacks_t taskCallbacks = {&Product::DoTask<'e'>, &Product::DoTask<'s'>, &Product::DoTask<'r'>,
                                               &Product::DoTask<'u'>};
constexpr ny_updater_callbacks_t updaterCallbacks = {&Product::Notify, &Product::SetInfo, &Product::GetInfo,
                                                     &Product::TakeEvent};

class Hostile : public SimulatedClientTest {
protected:
    void TearDown() override {
        SimulatedClientTest::TearDown();
        ny_sim_reset();
    }

    int32_t RegisterProvider(const char* productId = product) {
        return Call<&ny_property_register_provider_callback>(client, productId, &Product::Provide, &module);
    }
    int32_t UnregisterProvider(const char* productId = product) {
        return Call<&ny_property_unregister_provider_callback>(client, productId);
    }

    void RegisterForAll() {
        EXPECT_EQ(RegisterProvider(), NY_OK);
        EXPECT_EQ(Call<&ny_policy_register_notification_callback>(client, product, 1U, &Product::TakePolicy, &module),
                  NY_OK);
        EXPECT_EQ(Call<&ny_scheduler_register_task_callbacks>(client, product, "scan", &taskCallbacks, &module), NY_OK);
        EXPECT_EQ(Call<&ny_updater_register_callbacks>(client, product, &updaterCallbacks, &module), NY_OK);
        EXPECT_EQ(Call<&ny_client_handler_set_logger_callback>(client, &Product::Hear, &module), NY_OK);
    }
    void UnregisterAll() {
        EXPECT_EQ(UnregisterProvider(), NY_OK);
        EXPECT_EQ(Call<&ny_policy_unregister_notification_callback>(client, product), NY_OK);
        EXPECT_EQ(Call<&ny_scheduler_unregister_task_callbacks>(client, product, "scan"), NY_OK);
        EXPECT_EQ(Call<&ny_updater_unregister_callbacks>(client, product), NY_OK);
    }

    // The answer of a late call, or why there was none.
    static int32_t CallLate(ny_sim_callback callback, size_t index = 0) {
        ny_sim_late_call_t* call = nullptr;
        int32_t answer = ny_sim_call_late(callback, product, index, &call);
        if (answer == NY_OK) {
            EXPECT_NE(ny_sim_late_call_thread(call), ::GetCurrentThreadId());
            EXPECT_EQ(ny_sim_late_call_wait(call, limit, &answer), NY_OK);
        }
        ny_sim_late_call_release(call);
        return answer;
    }

    Product module;
};

const auto linesOfAllCallbacks = ElementsAre(
    "properties of PRODUCT1000", "policy of PRODUCT1000", "task e hostile scan of PRODUCT1000",
    "task s hostile scan of PRODUCT1000", "task r hostile scan of PRODUCT1000", "task u hostile scan of PRODUCT1000",
    "notify second third fourth of PRODUCT1000", "set second key of PRODUCT1000", "get second key of PRODUCT1000",
    "event of PRODUCT1000", "3 hostile a line of log");

TEST_F(Hostile, CallsEveryCallbackInsideRegisterOnTheSameThread) {
    for (const ny_sim_callback callback : allCallbacks) {
        EXPECT_EQ(ny_sim_call_in_register(callback, NY_SIM_ON_SAME_THREAD), NY_OK);
    }
    module.inCallback = [] { EXPECT_EQ(ny_sim_live_handles(NY_SIM_CLIENT), 1U); };
    RegisterForAll();
    EXPECT_THAT(module.lines, linesOfAllCallbacks);
    EXPECT_EQ(module.threadId, ::GetCurrentThreadId());
    EXPECT_EQ(ny_sim_register_call_count(), std::size(allCallbacks));
    int32_t answer = 0;
    EXPECT_EQ(ny_sim_register_call_answer(0, &answer), NY_OK);
    EXPECT_EQ(answer, 70);
    EXPECT_EQ(ny_sim_register_call_answer(std::size(allCallbacks), &answer), NY_INVALID_ARGUMENT);
    EXPECT_EQ(ny_sim_live_handles(NY_SIM_ANY), 1U) << "the client alone";
    EXPECT_EQ(ny_sim_lent_tasks(), 0U);
}

TEST_F(Hostile, CallsInsideRegisterOnAnotherThreadThatRegisterWaitsFor) {
    ASSERT_EQ(ny_sim_call_in_register(NY_SIM_CALL_PROPERTIES, NY_SIM_ON_OTHER_THREAD), NY_OK);
    ny_sim_set_one_lock(1);
    module.inCallback = [this] {
        // The product is registered already, and the thread shares the agent's lock.
        EXPECT_EQ(ny_sim_has_property_provider(product), 1);
        EXPECT_EQ(UnregisterProvider(), NY_OK);
    };
    EXPECT_EQ(RegisterProvider(), NY_OK);
    EXPECT_THAT(module.lines, ElementsAre("properties of PRODUCT1000"));
    EXPECT_NE(module.threadId, ::GetCurrentThreadId());
    EXPECT_EQ(module.client, client);
    EXPECT_EQ(ny_sim_has_property_provider(product), 0);
}

TEST_F(Hostile, CallsInsideRegisterForThatServiceAloneUntilItIsSwitchedOff) {
    ASSERT_EQ(ny_sim_call_in_register(NY_SIM_CALL_POLICY, NY_SIM_ON_SAME_THREAD), NY_OK);
    EXPECT_EQ(RegisterProvider(), NY_OK);
    EXPECT_THAT(module.lines, IsEmpty());
    ASSERT_EQ(ny_sim_call_in_register(NY_SIM_CALL_PROPERTIES, NY_SIM_ON_SAME_THREAD), NY_OK);
    EXPECT_EQ(RegisterProvider(), NY_ALREADY_EXISTS);
    EXPECT_THAT(module.lines, IsEmpty()) << "what is refused is not called";
    ny_sim_reset();
    EXPECT_EQ(RegisterProvider("PRODUCT2000"), NY_OK);
    EXPECT_THAT(module.lines, IsEmpty());
    EXPECT_EQ(ny_sim_call_in_register(static_cast<ny_sim_callback>(99), NY_SIM_ON_SAME_THREAD), NY_INVALID_ARGUMENT);
    EXPECT_EQ(ny_sim_call_in_register(NY_SIM_CALL_LOG, static_cast<ny_sim_register_call>(99)), NY_INVALID_ARGUMENT);
}

TEST_F(Hostile, HoldsItsOneLockInACallbackSoThatRegisterWaits) {
    ny_sim_set_one_lock(1);
    ASSERT_EQ(RegisterProvider(), NY_OK);
    Checkpoint held;
    Event registered;
    module.inCallback = [&] {
        // Recursive: a callback may register.
        EXPECT_EQ(RegisterProvider("PRODUCT2000"), NY_OK);
        held.Stop();
        EXPECT_FALSE(registered.IsSet());
    };
    const AgentRequest request(product);
    ASSERT_TRUE(held.isInside.Wait());
    std::thread other([&] {
        EXPECT_EQ(RegisterProvider("PRODUCT3000"), NY_OK);
        registered.Set();
    });
    EXPECT_EQ(ny_sim_wait_calls("ny_property_register_provider_callback", 3, 20), NY_SIM_TIMEOUT);
    held.mayGoOn.Set();
    EXPECT_TRUE(registered.Wait());
    other.join();
    EXPECT_EQ(request.Answer(), 70);
}

TEST_F(Hostile, WithoutTheLockRegistersWhileACallbackRuns) {
    ASSERT_EQ(RegisterProvider(), NY_OK);
    module.inCallback = [&] { std::thread([&] { EXPECT_EQ(RegisterProvider("PRODUCT3000"), NY_OK); }).join(); };
    EXPECT_EQ(AgentRequest(product).Answer(), 70);
}

TEST_F(Hostile, SwitchingTheLockOffLetsGoOfThoseThatWait) {
    ny_sim_set_one_lock(1);
    ASSERT_EQ(RegisterProvider(), NY_OK);
    module.inCallback = [&] {
        std::thread other([&] { EXPECT_EQ(RegisterProvider("PRODUCT3000"), NY_OK); });
        ny_sim_set_one_lock(0);
        other.join();
    };
    EXPECT_EQ(AgentRequest(product).Answer(), 70);
    EXPECT_EQ(RegisterProvider("PRODUCT4000"), NY_OK);
}

// Unregister has the lock and waits for the callback, which began without it.
TEST_F(Hostile, SwitchingTheLockOnLetsCallbacksThatAreInsideGoOnWithoutIt) {
    ASSERT_EQ(RegisterProvider(), NY_OK);
    Event registered;
    std::thread unregistering;
    module.inCallback = [&] {
        ny_sim_set_one_lock(1);
        unregistering = std::thread([&] { EXPECT_EQ(UnregisterProvider(), NY_OK); });
        while (ny_sim_has_property_provider(product) != 0) {
            std::this_thread::yield();
        }
        EXPECT_EQ(RegisterProvider("PRODUCT2000"), NY_OK);
        registered.Set();
    };
    const AgentRequest request(product);
    EXPECT_TRUE(registered.Wait());
    ny_sim_set_one_lock(0);
    EXPECT_EQ(request.Answer(), 70);
    unregistering.join();
}

TEST_F(Hostile, CallsLateAfterUnregisterAndRelease) {
    ny_sim_set_remember(1);
    RegisterForAll();
    ny_client_t* const registered = client;
    UnregisterAll();
    ReleaseClient();
    libraries.reset();
    for (const ny_sim_callback callback : allCallbacks) {
        EXPECT_EQ(ny_sim_remembered_count(callback, product), 1U);
        EXPECT_EQ(CallLate(callback), 70);
        if (callback != NY_SIM_CALL_LOG) {
            EXPECT_EQ(module.client, registered);
        }
    }
    EXPECT_THAT(module.lines, linesOfAllCallbacks);
    EXPECT_EQ(ny_sim_live_handles(NY_SIM_ANY), 0U);
    EXPECT_EQ(ny_sim_lent_tasks(), 0U);
    EXPECT_EQ(ny_sim_misuse_count(), 0U);
}

TEST_F(Hostile, RemembersOnlyWhileItIsToldToAndForgetsAtReset) {
    EXPECT_EQ(RegisterProvider(), NY_OK);
    EXPECT_EQ(CallLate(NY_SIM_CALL_PROPERTIES), NY_SIM_NOT_REGISTERED);
    EXPECT_EQ(UnregisterProvider(), NY_OK);
    ny_sim_set_remember(1);
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(RegisterProvider(), NY_OK);
        EXPECT_EQ(UnregisterProvider(), NY_OK);
    }
    EXPECT_EQ(ny_sim_remembered_count(NY_SIM_CALL_PROPERTIES, product), 2U);
    EXPECT_EQ(ny_sim_remembered_count(NY_SIM_CALL_PROPERTIES, "PRODUCT2000"), 0U);
    EXPECT_EQ(ny_sim_remembered_count(NY_SIM_CALL_POLICY, product), 0U);
    EXPECT_EQ(CallLate(NY_SIM_CALL_PROPERTIES, 1), 70);
    EXPECT_EQ(CallLate(NY_SIM_CALL_PROPERTIES, 2), NY_SIM_NOT_REGISTERED);
    EXPECT_EQ(CallLate(static_cast<ny_sim_callback>(99)), NY_INVALID_ARGUMENT);
    ny_sim_reset();
    EXPECT_EQ(CallLate(NY_SIM_CALL_PROPERTIES), NY_SIM_NOT_REGISTERED);
}

TEST_F(Hostile, TellsHowManyRememberedRegistrationsUnregisterHasEnded) {
    ny_sim_set_remember(1);
    ASSERT_EQ(RegisterProvider(), NY_OK);
    EXPECT_EQ(ny_sim_unregistered_count(NY_SIM_CALL_PROPERTIES, product), 0U);
    ASSERT_EQ(UnregisterProvider(), NY_OK);
    EXPECT_EQ(ny_sim_unregistered_count(NY_SIM_CALL_PROPERTIES, product), 1U);
    ASSERT_EQ(RegisterProvider(), NY_OK);
    ReleaseClient();
    EXPECT_EQ(ny_sim_remembered_count(NY_SIM_CALL_PROPERTIES, product), 2U);
    EXPECT_EQ(ny_sim_unregistered_count(NY_SIM_CALL_PROPERTIES, product), 1U);
    EXPECT_EQ(ny_sim_unregistered_count(NY_SIM_CALL_PROPERTIES, nullptr), 0U);
    EXPECT_EQ(ny_sim_unregistered_count(NY_SIM_CALL_POLICY, product), 0U);
}

TEST_F(Hostile, IsNotWaitedForInALateCall) {
    ny_sim_set_remember(1);
    ASSERT_EQ(RegisterProvider(), NY_OK);
    Checkpoint held;
    module.inCallback = [&] { held.Stop(); };
    ny_sim_late_call_t* call = nullptr;
    ASSERT_EQ(ny_sim_call_late(NY_SIM_CALL_PROPERTIES, product, 0, &call), NY_OK);
    ASSERT_TRUE(held.isInside.Wait());
    EXPECT_EQ(ny_sim_late_call_wait(call, 0, nullptr), NY_SIM_TIMEOUT);
    EXPECT_EQ(UnregisterProvider(), NY_OK);
    ReleaseClient();
    held.mayGoOn.Set();
    ny_sim_late_call_release(call);
    EXPECT_EQ(ny_sim_live_handles(NY_SIM_ANY), 0U);
}

TEST_F(Hostile, ThatIsImpatientReturnsFromUnregisterAndReleaseWhileACallbackRuns) {
    ny_sim_set_impatient(1);
    ASSERT_EQ(RegisterProvider(), NY_OK);
    Checkpoint held;
    module.inCallback = [&] { held.Stop(); };
    const AgentRequest request(product);
    ASSERT_TRUE(held.isInside.Wait());
    EXPECT_EQ(UnregisterProvider(), NY_OK);
    ReleaseClient();
    held.mayGoOn.Set();
    EXPECT_EQ(request.Answer(), 70);
}

}  // namespace
