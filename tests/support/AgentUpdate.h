#pragma once

#include <optional>
#include <string>

#include "support/ModuleRequest.h"

inline int32_t WaitForUpdate(ny_sim_updater_request_t* request, uint32_t limit, int32_t* answer) {
    return ny_sim_updater_request_wait(request, limit, answer, nullptr);
}

// The agent's updater calls a product. The call is JSON, see ny_sim_request_update.
class AgentUpdate : public ModuleRequest<ny_sim_updater_request_t, &ny_sim_updater_request_release, &WaitForUpdate,
                                         &ny_sim_updater_request_thread> {
public:
    explicit AgentUpdate(const std::string& call)
        : ModuleRequest([&](auto** made) { return ny_sim_request_update(call.c_str(), made); }) {}

    int32_t Result() const {
        int32_t result = NY_SIM_UNWRITTEN;
        if (WasMade()) {
            EXPECT_EQ(ny_sim_updater_request_wait(request, static_cast<uint32_t>(soon.count()), nullptr, &result),
                      NY_OK);
        }
        return result;
    }
    // The value that the product gave for its information; none when it gave none.
    std::optional<std::string> Value() const {
        Answer();
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
