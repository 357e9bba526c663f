// One call from the agent's updater, as it is described in JSON.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "simulator/core/values/Values.h"

namespace simulator {

struct UpdaterCall {
    enum class Kind { UpdateNotify, SetProductInfo, GetProductInfo, Event };

    Kind kind = Kind::UpdateNotify;
    std::string product;
    // Absent texts are passed as null.
    std::optional<std::string> second;
    std::optional<std::string> third;
    std::optional<std::string> fourth;
    std::optional<std::string> key;
    uint32_t number = 0;
    ValuePointer value;  // may be null
    bool withoutProduct = false;
    bool withoutResult = false;
    bool withoutOut = false;
};

// Throws Failure when the text is no such description or has an unknown member.
UpdaterCall UpdaterCallFromJson(const char* json);

}  // namespace simulator
