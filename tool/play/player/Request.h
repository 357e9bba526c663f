#pragma once

#include <chrono>
#include <cstdint>
#include <nlohmann/json.hpp>

#include "vsmsgbus_testing/Failure.hpp"

namespace tool::play {

class Stage;

// What a step that goes on beside the story has begun: a request of the agent's, or a call of a module's function.
class Request {
public:
    virtual ~Request() = default;
    Request() = default;
    Request(const Request&) = delete;
    Request& operator=(const Request&) = delete;

    // The operating system's id of the thread that it is made on.
    virtual uint32_t Thread() const = 0;
    virtual bool IsAnsweredWithin(std::chrono::milliseconds limit) = 0;
    // Once it is answered: tells what came back, and throws Failure when `step` expects something else.
    virtual void Look(Stage& stage, const nlohmann::json& step) = 0;
};

// Something has not come back: a thread is still inside the module.
class Hung : public vsmsgbus::testing::Failure {
public:
    using Failure::Failure;
};

}  // namespace tool::play
