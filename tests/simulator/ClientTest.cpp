// Clients, their log callbacks and the agent's property requests.
#include <functional>

#include "simulator/SimulatorTest.h"

namespace {

using testing::ElementsAre;

// A product's provider callback: notes how it is called, and answers as the test says.
class Provider {
public:
    static int32_t Provide(ny_client_t* client, const char* productId, ny_property_bag_t* bag, void* data) {
        Provider& self = *static_cast<Provider*>(data);
        self.client = client;
        self.productId = productId;
        self.threadId = ::GetCurrentThreadId();
        return self.answer(bag);
    }

    std::function<int32_t(ny_property_bag_t*)> answer = [](ny_property_bag_t*) { return NY_OK; };
    ny_client_t* client = nullptr;
    std::string productId;
    DWORD threadId = 0;
};

class ClientTest : public SimulatedClientTest {
protected:
    int32_t Register(const char* productId = "PRODUCT1000") {
        return Call<&ny_property_register_provider_callback>(client, productId, &Provider::Provide, &provider);
    }
    int32_t Unregister(const char* productId = "PRODUCT1000") {
        return Call<&ny_property_unregister_provider_callback>(client, productId);
    }

    static ny_sim_property_request_t* Request() {
        ny_sim_property_request_t* request = nullptr;
        EXPECT_EQ(ny_sim_request_properties("PRODUCT1000", &request), NY_OK);
        return request;
    }

    static constexpr uint32_t longEnough = static_cast<uint32_t>(soon.count());

    Provider provider;
};

TEST_F(ClientTest, IsStartedAndStopped) {
    EXPECT_EQ(ny_sim_started_clients(), 0U);
    EXPECT_EQ(Call<&ny_client_handler_start>(client), NY_OK);
    EXPECT_EQ(ny_sim_started_clients(), 1U);
    EXPECT_EQ(Call<&ny_client_handler_stop>(client), NY_OK);
    EXPECT_EQ(ny_sim_started_clients(), 0U);
}

TEST_F(ClientTest, IsKnownByTheProductsThatAreRegisteredWithIt) {
    const char* product = "untouched";
    EXPECT_EQ(ny_sim_get_product(0, &product), NY_INVALID_ARGUMENT);
    EXPECT_STREQ(product, "untouched");
    ASSERT_EQ(Register("PRODUCT2000"), NY_OK);
    ASSERT_EQ(Register("PRODUCT1000"), NY_OK);
    ASSERT_EQ(ny_sim_get_product(0, &product), NY_OK);
    EXPECT_STREQ(product, "PRODUCT1000");
    ASSERT_EQ(ny_sim_get_product(1, &product), NY_OK);
    EXPECT_STREQ(product, "PRODUCT2000");
    EXPECT_EQ(ny_sim_get_product(2, &product), NY_INVALID_ARGUMENT);
    EXPECT_EQ(ny_sim_get_product(0, nullptr), NY_INVALID_ARGUMENT);
    ASSERT_EQ(Unregister("PRODUCT1000"), NY_OK);
    ASSERT_EQ(ny_sim_get_product(0, &product), NY_OK);
    EXPECT_STREQ(product, "PRODUCT2000");
}

TEST_F(ClientTest, LendsItsMessageBus) {
    ny_msgbus_t* bus = nullptr;
    ASSERT_EQ(Call<&ny_client_handler_get_msgbus>(client, &bus), NY_OK);
    EXPECT_EQ(Call<&ny_msgbus_disable_watcher>(bus), NY_OK);
    EXPECT_EQ(Call<&ny_client_handler_set_msgbus>(client, bus), NY_OK);
    EXPECT_EQ(ny_sim_live_handles(NY_SIM_ANY), 1U);
    ReleaseClient();
    EXPECT_EQ(Call<&ny_msgbus_disable_watcher>(bus), NY_INVALID_ARGUMENT);
    EXPECT_EQ(ny_sim_misuse_count(), 1U);
    ny_sim_reset();
}

TEST_F(ClientTest, IsToldTheAgentsLogLinesOnAnAgentThread) {
    struct Heard {
        Lines lines;
        DWORD threadId = 0;
    } heard;
    const ny_log_callback_t hear = [](uint32_t severity, const char* module, const char* message, void* data) {
        auto& target = *static_cast<Heard*>(data);
        target.lines.push_back(std::to_string(severity) + " " + module + ": " + message);
        target.threadId = ::GetCurrentThreadId();
        return int32_t{NY_OK};
    };
    EXPECT_EQ(ny_sim_emit_log(2, "module", "nobody hears"), NY_SIM_NOT_REGISTERED);
    ASSERT_EQ(Call<&ny_client_handler_set_logger_callback>(client, hear, &heard), NY_OK);
    EXPECT_EQ(ny_sim_emit_log(2, "module", "100% heard"), NY_OK);
    EXPECT_EQ(ny_sim_emit_log(6, "other", ""), NY_OK);
    EXPECT_THAT(heard.lines, ElementsAre("2 module: 100% heard", "6 other: "));
    EXPECT_NE(heard.threadId, ::GetCurrentThreadId());
    EXPECT_EQ(ny_sim_emit_log(2, nullptr, "text"), NY_INVALID_ARGUMENT);
    EXPECT_EQ(ny_sim_emit_log(2, "module", nullptr), NY_INVALID_ARGUMENT);
}

TEST_F(ClientTest, IsAskedForPropertiesOnAnAgentThread) {
    provider.answer = [&](ny_property_bag_t* bag) {
        for (const char* json : {"\"first\"", "\"second\""}) {
            ny_variant_t* const value = FromJson(json);
            EXPECT_EQ(Call<&ny_property_bag_add_property>(bag, "path", json, value), NY_OK);
            EXPECT_EQ(Call<&ny_variant_release>(value), NY_OK);
        }
        EXPECT_EQ(ny_sim_live_handles(NY_SIM_PROPERTY_BAG), 1U);
        return 77;
    };
    ASSERT_EQ(Register(), NY_OK);
    ny_sim_property_request_t* const request = Request();
    int32_t answer = 0;
    ASSERT_EQ(ny_sim_property_request_wait(request, longEnough, &answer), NY_OK);
    EXPECT_EQ(answer, 77);
    EXPECT_EQ(provider.client, client);
    EXPECT_EQ(provider.productId, "PRODUCT1000");
    EXPECT_EQ(provider.threadId, ny_sim_property_request_thread(request));
    EXPECT_NE(provider.threadId, ::GetCurrentThreadId());
    const char* path = nullptr;
    const char* name = nullptr;
    const char* value = nullptr;
    ASSERT_EQ(ny_sim_property_request_size(request), 2U);
    ASSERT_EQ(ny_sim_property_request_get(request, 1, &path, &name, &value), NY_OK);
    EXPECT_EQ(Lines({path, name, value}), Lines({"path", "\"second\"", "second"}));
    EXPECT_EQ(ny_sim_property_request_get(request, 2, &path, &name, &value), NY_INVALID_ARGUMENT);
    ny_sim_property_request_release(request);
    EXPECT_EQ(ny_sim_live_handles(NY_SIM_PROPERTY_BAG), 0U);
}

TEST_F(ClientTest, TakesTextsForProperties) {
    provider.answer = [&](ny_property_bag_t* bag) {
        ny_variant_t* const table = FromJson("{}");
        EXPECT_EQ(Call<&ny_property_bag_add_property>(bag, "path", "name", table), NY_INVALID_ARGUMENT);
        EXPECT_EQ(Call<&ny_variant_release>(table), NY_OK);
        return NY_OK;
    };
    ASSERT_EQ(Register(), NY_OK);
    ny_sim_property_request_t* const request = Request();
    EXPECT_EQ(ny_sim_property_request_wait(request, longEnough, nullptr), NY_OK);
    EXPECT_EQ(ny_sim_property_request_size(request), 0U);
    ny_sim_property_request_release(request);
}

TEST_F(ClientTest, IsRegisteredOncePerProduct) {
    EXPECT_EQ(ny_sim_has_property_provider("PRODUCT1000"), 0);
    EXPECT_EQ(Unregister(), NY_INVALID_ARGUMENT);
    EXPECT_EQ(Register(), NY_OK);
    EXPECT_EQ(Register(), NY_ALREADY_EXISTS);
    EXPECT_EQ(ny_sim_has_property_provider("PRODUCT1000"), 1);
    EXPECT_EQ(ny_sim_has_property_provider("product1000"), 0);
    EXPECT_EQ(ny_sim_has_property_provider(nullptr), 0);
    EXPECT_EQ(Unregister(), NY_OK);
    ny_sim_property_request_t* request = nullptr;
    EXPECT_EQ(ny_sim_request_properties("PRODUCT1000", &request), NY_SIM_NOT_REGISTERED);
    EXPECT_EQ(request, nullptr);
}

TEST_F(ClientTest, UnregisteringWaitsForACallbackOnAnotherThread) {
    Event inside;
    Event leave;
    provider.answer = [&](ny_property_bag_t*) {
        inside.Set();
        leave.Wait();
        return NY_OK;
    };
    ASSERT_EQ(Register(), NY_OK);
    ny_sim_property_request_t* const request = Request();
    ASSERT_TRUE(inside.Wait());
    EXPECT_EQ(ny_sim_property_request_wait(request, 0, nullptr), NY_SIM_TIMEOUT);
    EXPECT_EQ(ny_sim_property_request_size(request), 0U);
    ExpectToWaitForCallback(
        "ny_property_unregister_provider_callback", [this] { return Unregister(); }, leave);
    ny_sim_property_request_release(request);
}

TEST_F(ClientTest, MayBeUnregisteredFromItsOwnCallback) {
    provider.answer = [&](ny_property_bag_t*) { return Unregister(); };
    ASSERT_EQ(Register(), NY_OK);
    ny_sim_property_request_t* const request = Request();
    int32_t answer = -1;
    EXPECT_EQ(ny_sim_property_request_wait(request, longEnough, &answer), NY_OK);
    EXPECT_EQ(answer, NY_OK);
    ny_sim_property_request_release(request);
}

TEST_F(ClientTest, EndsItsRegistrationsWhenItIsReleased) {
    ASSERT_EQ(Register(), NY_OK);
    ReleaseClient();
    EXPECT_EQ(ny_sim_has_property_provider("PRODUCT1000"), 0);
}

}  // namespace
