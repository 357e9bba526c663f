#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>

#include "ny_simulator.h"
#include "support/LineLog.h"

// A request that the agent makes of a product on a thread of its own; the answer is waited for at the latest when the
// object ends. The functions are those of the simulated agent for this kind of request.
template <class Handle, auto release, auto wait, auto thread>
class ModuleRequest {
public:
    ~ModuleRequest() { release(request); }
    ModuleRequest(const ModuleRequest&) = delete;
    ModuleRequest& operator=(const ModuleRequest&) = delete;

    // Whether there was a module to ask.
    bool WasMade() const { return code == NY_OK; }
    bool IsAnsweredWithin(std::chrono::milliseconds limit) const {
        return wait(request, static_cast<uint32_t>(limit.count()), nullptr) == NY_OK;
    }

    // The product's answer, or the code for why it was not asked.
    int32_t Answer() const {
        int32_t answer = code;
        if (WasMade()) {
            EXPECT_EQ(wait(request, static_cast<uint32_t>(soon.count()), &answer), NY_OK);
        }
        return answer;
    }

    uint32_t ThreadId() const { return thread(request); }

protected:
    // `make(&request)` makes it, and answers NY_OK or why it could not.
    template <class Make>
    explicit ModuleRequest(const Make& make) : code(make(&request)) {}

    Handle* request = nullptr;
    const int32_t code;
};
