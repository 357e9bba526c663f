#pragma once

#include <gtest/gtest.h>

#include <string>

#include "ny_simulator.h"
#include "support/LineLog.h"

// The agent notifies a product of its policies; the answer is waited for at the latest when the object ends.
class PolicyNotice {
public:
    explicit PolicyNotice(const std::string& productId) : code(ny_sim_notify_policy(productId.c_str(), &request)) {}
    // The product's callback is told another id, or none.
    PolicyNotice(const std::string& productId, const char* toldId)
        : code(ny_sim_notify_policy_as(productId.c_str(), toldId, &request)) {}
    ~PolicyNotice() { ny_sim_policy_request_release(request); }
    PolicyNotice(const PolicyNotice&) = delete;
    PolicyNotice& operator=(const PolicyNotice&) = delete;

    bool IsAnsweredWithin(std::chrono::milliseconds limit) const {
        return ny_sim_policy_request_wait(request, static_cast<uint32_t>(limit.count()), nullptr) == NY_OK;
    }

    // The product's answer, or the code for why it was not notified.
    int32_t Answer() const {
        int32_t answer = code;
        if (code == NY_OK) {
            EXPECT_EQ(ny_sim_policy_request_wait(request, static_cast<uint32_t>(soon.count()), &answer), NY_OK);
        }
        return answer;
    }

    uint32_t ThreadId() const { return ny_sim_policy_request_thread(request); }

private:
    ny_sim_policy_request_t* request = nullptr;
    const int32_t code;
};
