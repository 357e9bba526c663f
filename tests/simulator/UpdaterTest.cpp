// The updater of the simulated agent.
#include <functional>

#include "simulator/SimulatorTest.h"
#include "support/AgentUpdate.h"
#include "support/Checkpoint.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::string TextOrNull(const char* text) {
    return text != nullptr ? text : "null";
}

// A product's callbacks, which note how they are called.
class Updater {
public:
    static int32_t Notify(ny_client_t* client, const char* productId, const char* second, const char* third,
                          uint32_t number, const char* fourth, int32_t* result, void* userData) {
        Updater& self = *static_cast<Updater*>(userData);
        self.client = client;
        self.threadId = ::GetCurrentThreadId();
        self.lines.push_back("notify " + TextOrNull(productId) + " " + TextOrNull(second) + " " + TextOrNull(third) +
                             " " + std::to_string(number) + " " + TextOrNull(fourth));
        return self.End(result);
    }

    static int32_t SetInfo(ny_client_t* /*client*/, const char* productId, const char* second, const char* key,
                           ny_variant_t* value, int32_t* result, void* userData) {
        Updater& self = *static_cast<Updater*>(userData);
        self.value = value;
        self.lines.push_back("set " + TextOrNull(productId) + " " + TextOrNull(second) + " " + TextOrNull(key));
        return self.End(result);
    }

    static int32_t GetInfo(ny_client_t* /*client*/, const char* productId, const char* second, const char* key,
                           ny_variant_t** out, int32_t* result, void* userData) {
        Updater& self = *static_cast<Updater*>(userData);
        self.lines.push_back("get " + TextOrNull(productId) + " " + TextOrNull(second) + " " + TextOrNull(key));
        if (out != nullptr) {
            *out = self.given;
        }
        return self.End(result);
    }

    static int32_t TakeEvent(ny_client_t* /*client*/, const char* productId, const ny_updater_event_t* event,
                             void* userData) {
        Updater& self = *static_cast<Updater*>(userData);
        self.lines.push_back("event " + TextOrNull(productId) + (event != nullptr ? "" : " without an event"));
        return self.End(nullptr);
    }

    std::function<int32_t()> answer = [] { return NY_OK; };
    Lines lines;
    ny_client_t* client = nullptr;
    ny_variant_t* value = nullptr;
    ny_variant_t* given = nullptr;
    DWORD threadId = 0;

private:
    int32_t End(int32_t* result) const {
        if (result != nullptr) {
            *result = 5;
        }
        return answer();
    }
};

constexpr ny_updater_callbacks_t callbacks = {&Updater::Notify, &Updater::SetInfo, &Updater::GetInfo,
                                              &Updater::TakeEvent};

class UpdaterTest : public SimulatedClientTest {
protected:
    int32_t Register(const ny_updater_callbacks_t* table = &callbacks) {
        return Call<&ny_updater_register_callbacks>(client, "PRODUCT1000", table, &updater);
    }
    int32_t Unregister() { return Call<&ny_updater_unregister_callbacks>(client, "PRODUCT1000"); }

    const std::string notCalled = "answer " + std::to_string(NY_SIM_NOT_REGISTERED);
    Updater updater;
};

TEST_F(UpdaterTest, CallsEachOfTheFourWithItsTexts) {
    ASSERT_EQ(Register(), NY_OK);
    EXPECT_EQ(Update(NotifyCall()), "answer 0, result 5");
    EXPECT_EQ(Update(SetCall()), "answer 0, result 5");
    EXPECT_EQ(Update(GetCall()), "answer 0, result 5");
    EXPECT_EQ(Update(EventCall()), "answer 0");
    EXPECT_THAT(updater.lines, ElementsAre("notify PRODUCT1000 text 2 text 3 7 text 4", "set PRODUCT1000 text 2 a key",
                                           "get PRODUCT1000 text 2 a key", "event PRODUCT1000"));
    EXPECT_EQ(updater.client, client);
}

TEST_F(UpdaterTest, CallsOnAThreadOfTheAgents) {
    ASSERT_EQ(Register(), NY_OK);
    const AgentUpdate update(NotifyCall());
    EXPECT_EQ(update.Answer(), NY_OK);
    EXPECT_EQ(updater.threadId, update.ThreadId());
    EXPECT_NE(updater.threadId, ::GetCurrentThreadId());
}

TEST_F(UpdaterTest, PassesNullForWhatIsAbsentOrLeftOut) {
    ASSERT_EQ(Register(), NY_OK);
    EXPECT_EQ(Update(R"({"call": "update notify", "product": "PRODUCT1000", "without": ["product", "result"]})"),
              "answer 0");
    EXPECT_EQ(Update(R"({"call": "set product info", "product": "PRODUCT1000"})"), "answer 0, result 5");
    EXPECT_EQ(updater.value, nullptr);
    updater.given = FromJson("\"kept by the product\"");
    EXPECT_EQ(Update(R"({"call": "get product info", "product": "PRODUCT1000", "without": ["out"]})"),
              "answer 0, result 5");
    EXPECT_THAT(updater.lines,
                ElementsAre("notify null null null 0 null", "set PRODUCT1000 null null", "get PRODUCT1000 null null"));
    EXPECT_EQ(Call<&ny_variant_release>(updater.given), NY_OK);
}

TEST_F(UpdaterTest, LendsTheValueThatIsSet) {
    std::string text;
    updater.answer = [&] {
        text = TextOf(updater.value);
        EXPECT_EQ(ny_sim_live_handles(NY_SIM_VARIANT), 0U);
        return NY_OK;
    };
    ASSERT_EQ(Register(), NY_OK);
    EXPECT_EQ(Update(SetCall()), "answer 0, result 5");
    EXPECT_EQ(text, "a value");
    const char* dead = nullptr;
    size_t length = 0;
    EXPECT_EQ(Call<&ny_variant_get_string>(updater.value, &dead, &length), NY_INVALID_ARGUMENT);
    EXPECT_EQ(ny_sim_misuse_count(), 1U);
    ny_sim_reset();
}

TEST_F(UpdaterTest, OwnsTheValueThatItGets) {
    ASSERT_EQ(Register(), NY_OK);
    updater.given = FromJson(R"("be\u0000hind")");
    const AgentUpdate update(GetCall());
    EXPECT_EQ(update.Value(), std::string("be\0hind", 7));
    EXPECT_EQ(ny_sim_live_handles(NY_SIM_VARIANT), 0U);
}

TEST_F(UpdaterTest, RefusesAValueThatIsNoText) {
    ASSERT_EQ(Register(), NY_OK);
    updater.given = FromJson("{}");
    EXPECT_EQ(Update(GetCall()), "answer 1, result 5");
}

TEST_F(UpdaterTest, HandsOutTheCallbacksAnswer) {
    updater.answer = [] { return 77; };
    ASSERT_EQ(Register(), NY_OK);
    EXPECT_EQ(Update(NotifyCall()), "answer 77, result 5");
    EXPECT_EQ(Update(EventCall()), "answer 77");
}

TEST_F(UpdaterTest, RefusesCallsThatItDoesNotUnderstand) {
    ASSERT_EQ(Register(), NY_OK);
    ny_sim_updater_request_t* request = nullptr;
    for (const char* const json :
         {"", "[]", "{}", R"({"call": "event"})", R"({"product": "PRODUCT1000"})",
          R"({"call": "evnet", "product": "PRODUCT1000"})", R"({"call": 1, "product": "PRODUCT1000"})",
          R"({"call": "event", "product": null})", R"({"call": "event", "product": "PRODUCT1000", "secnod": ""})",
          R"({"call": "event", "product": "PRODUCT1000", "number": -1})",
          R"({"call": "event", "product": "PRODUCT1000", "number": 4294967296})",
          R"({"call": "event", "product": "PRODUCT1000", "without": ["outt"]})",
          R"({"call": "event", "product": "PRODUCT1000", "without": "out"})"}) {
        EXPECT_EQ(ny_sim_request_update(json, &request), NY_INVALID_ARGUMENT) << json;
    }
    EXPECT_EQ(ny_sim_request_update(nullptr, &request), NY_INVALID_ARGUMENT);
    EXPECT_EQ(ny_sim_request_update(EventCall().c_str(), nullptr), NY_INVALID_ARGUMENT);
    EXPECT_EQ(request, nullptr);
    EXPECT_THAT(updater.lines, IsEmpty());
}

TEST_F(UpdaterTest, TakesWholeTablesOfCallbacksOnly) {
    EXPECT_EQ(Register(nullptr), NY_INVALID_ARGUMENT);
    ny_updater_callbacks_t table = callbacks;
    table.update_notify = nullptr;
    EXPECT_EQ(Register(&table), NY_INVALID_ARGUMENT);
    table = callbacks;
    table.set_product_info = nullptr;
    EXPECT_EQ(Register(&table), NY_INVALID_ARGUMENT);
    table = callbacks;
    table.get_product_info = nullptr;
    EXPECT_EQ(Register(&table), NY_INVALID_ARGUMENT);
    table = callbacks;
    table.event = nullptr;
    EXPECT_EQ(Register(&table), NY_INVALID_ARGUMENT);
    EXPECT_EQ(ny_sim_has_updater("PRODUCT1000"), 0);
}

TEST_F(UpdaterTest, IsRegisteredOncePerProduct) {
    EXPECT_EQ(Update(NotifyCall()), notCalled);
    EXPECT_EQ(Unregister(), NY_INVALID_ARGUMENT);
    EXPECT_EQ(Register(), NY_OK);
    EXPECT_EQ(Register(), NY_ALREADY_EXISTS);
    EXPECT_EQ(ny_sim_has_updater("PRODUCT1000"), 1);
    EXPECT_EQ(ny_sim_has_updater("product1000"), 0);
    EXPECT_EQ(ny_sim_has_updater(nullptr), 0);
    EXPECT_EQ(Unregister(), NY_OK);
    EXPECT_EQ(Update(NotifyCall()), notCalled);
}

TEST_F(UpdaterTest, UnregisteringWaitsForACallbackOnAnotherThread) {
    Checkpoint held;
    updater.answer = [&] {
        held.Stop();
        return NY_OK;
    };
    ASSERT_EQ(Register(), NY_OK);
    const AgentUpdate update(NotifyCall());
    ASSERT_TRUE(held.isInside.Wait());
    EXPECT_FALSE(update.IsAnsweredWithin(std::chrono::milliseconds(0)));
    ExpectToWaitForCallback(
        "ny_updater_unregister_callbacks", [this] { return Unregister(); }, held.mayGoOn);
}

TEST_F(UpdaterTest, EndsItsRegistrationsWithTheClient) {
    ASSERT_EQ(Register(), NY_OK);
    ReleaseClient();
    EXPECT_EQ(ny_sim_has_updater("PRODUCT1000"), 0);
}

TEST_F(UpdaterTest, FailsWhereItIsToldTo) {
    ASSERT_EQ(ny_sim_fail_call("ny_updater_register_callbacks", 1, 77, NY_SIM_ONCE), NY_OK);
    EXPECT_EQ(Register(), 77);
    EXPECT_EQ(Register(), NY_OK);
    ASSERT_EQ(ny_sim_fail_call("ny_updater_unregister_callbacks", 1, 78, NY_SIM_ONCE), NY_OK);
    EXPECT_EQ(Unregister(), 78);
    EXPECT_EQ(Unregister(), NY_OK);
}

TEST_F(UpdaterTest, AnswersNonsenseAboutRequests) {
    const char* text = nullptr;
    size_t length = 0;
    EXPECT_EQ(ny_sim_updater_request_wait(nullptr, 0, nullptr, nullptr), NY_INVALID_ARGUMENT);
    EXPECT_EQ(ny_sim_updater_request_value(nullptr, &text, &length), NY_INVALID_ARGUMENT);
    EXPECT_EQ(ny_sim_updater_request_thread(nullptr), 0U);
    ny_sim_updater_request_release(nullptr);
}

}  // namespace
