#pragma once

#include <chrono>
#include <cstdint>
#include <nlohmann/json.hpp>

#include "vsmsgbus_testing/Failure.hpp"

namespace tool::play {

class Stage;

// A request that a step has begun and that may go on beside the story: one of the agent's, or a call of a module's
// function.
class Request {
public:
    virtual ~Request() = default;
    Request() = default;
    Request(const Request&) = delete;
    Request& operator=(const Request&) = delete;

    // The operating system's id of the thread on which the request is made.
    virtual uint32_t Thread() const = 0;
    virtual bool IsAnsweredWithin(std::chrono::milliseconds limit) = 0;
    // Tells the answer, and throws Failure when `step` expects another one. For a request that is answered.
    virtual void Look(Stage& stage, const nlohmann::json& step) = 0;
};

// A request or a call has not returned: a thread is still inside the module.
class Hung : public vsmsgbus::testing::Failure {
public:
    using Failure::Failure;
};

}  // namespace tool::play
