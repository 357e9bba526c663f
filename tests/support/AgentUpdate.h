#pragma once

#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "ny_simulator.h"
#include "support/LineLog.h"

// The agent's updater calls a product; the answer is waited for at the latest when the object ends. The call is JSON,
// see ny_sim_request_update.
class AgentUpdate {
public:
    explicit AgentUpdate(const std::string& call) : code(ny_sim_request_update(call.c_str(), &request)) {}
    ~AgentUpdate() { ny_sim_updater_request_release(request); }
    AgentUpdate(const AgentUpdate&) = delete;
    AgentUpdate& operator=(const AgentUpdate&) = delete;

    bool IsAnsweredWithin(std::chrono::milliseconds limit) const {
        return ny_sim_updater_request_wait(request, static_cast<uint32_t>(limit.count()), nullptr, nullptr) == NY_OK;
    }

    // The product's answer, or the code for why it was not called.
    int32_t Answer() const { return Wait().answer; }
    int32_t Result() const { return Wait().result; }
    // The value that the product gave for its information; none when it gave none.
    std::optional<std::string> Value() const {
        Wait();
        const char* text = nullptr;
        size_t length = 0;
        return ny_sim_updater_request_value(request, &text, &length) == NY_OK ? std::optional(std::string(text, length))
                                                                              : std::nullopt;
    }

    // "answer 0, result 2" with ", value <value>" when there is one.
    std::string Outcome() const {
        std::string outcome = "answer " + std::to_string(Answer());
        if (Result() != NY_SIM_UNWRITTEN) {
            outcome += ", result " + std::to_string(Result());
        }
        if (const auto value = Value()) {
            outcome += ", value <" + *value + ">";
        }
        return outcome;
    }

    uint32_t ThreadId() const { return ny_sim_updater_request_thread(request); }

private:
    struct Answered {
        int32_t answer;
        int32_t result;
    };

    Answered Wait() const {
        Answered answered{code, NY_SIM_UNWRITTEN};
        if (code == NY_OK) {
            EXPECT_EQ(ny_sim_updater_request_wait(request, static_cast<uint32_t>(soon.count()), &answered.answer,
                                                  &answered.result),
                      NY_OK);
        }
        return answered;
    }

    ny_sim_updater_request_t* request = nullptr;
    int32_t code;
};

// One call, as its outcome.
inline std::string Update(const std::string& call) {
    return AgentUpdate(call).Outcome();
}

// The three calls that a product answers, with texts that tell where they come from; and the fourth.
inline std::string NotifyCall(const std::string& product = "PRODUCT1000") {
    return R"({"call": "update notify", "product": ")" + product +
           R"(", "second": "text 2", "third": "text 3", "number": 7, "fourth": "text 4"})";
}
inline std::string SetCall(const std::string& product = "PRODUCT1000") {
    return R"({"call": "set product info", "product": ")" + product +
           R"(", "second": "text 2", "key": "a key", "value": "a value"})";
}
inline std::string GetCall(const std::string& product = "PRODUCT1000") {
    return R"({"call": "get product info", "product": ")" + product + R"(", "second": "text 2", "key": "a key"})";
}
inline std::string EventCall(const std::string& product = "PRODUCT1000") {
    return R"({"call": "event", "product": ")" + product + R"("})";
}
