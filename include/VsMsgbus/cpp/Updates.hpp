/// @file
/// Updates: what the agent tells of them, and what it asks about the product.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "VsMsgbus/UpdateNotify.h"

namespace vsmsgbus {

/// What the agent tells of an update: the texts in the agent's own order, valid during the call.
struct UpdateNotice {
    std::wstring_view second;  ///< the agent's second text
    std::wstring_view third;   ///< the agent's third text
    std::wstring_view fourth;  ///< the agent's fourth text
    uint32_t& number;          ///< may be changed, which the agent sees
};

/// What a product does about updates; what is not set is answered as for a product without a callback. For one product
/// never called on two threads at a time.
struct UpdateHandlers {
    /// Told of an update; its result goes to the agent.
    std::function<int32_t(UpdateNotice& notice)> notify = nullptr;
    /// The value of that name, or none when the product does not have it.
    std::function<std::optional<std::wstring>(std::wstring_view name)> get = nullptr;
    /// Sets the value of that name; false when the product does not take it.
    std::function<bool(std::wstring_view name, std::wstring_view value)> set = nullptr;

    /// Whether there is a handler.
    bool IsAnySet() const noexcept { return notify || get || set; }
};

}  // namespace vsmsgbus
