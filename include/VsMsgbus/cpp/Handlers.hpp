/// @file
/// What a product does: its handlers.
#pragma once

#include <cstdint>

#include "VsMsgbus/Entry.h"
#include "VsMsgbus/HealthCheck.h"
#include "VsMsgbus/cpp/Log.hpp"
#include "VsMsgbus/cpp/Policies.hpp"
#include "VsMsgbus/cpp/Properties.hpp"
#include "VsMsgbus/cpp/Tasks.hpp"
#include "VsMsgbus/cpp/Updates.hpp"

namespace vsmsgbus {

/// The handlers of one product. Those that are set are what the agent calls the product for; what they throw is told
/// the log handler and answered as a failure. They stay alive until no call is in them any more, and may end the
/// product.
struct Handlers {
    /// Asked for the product's properties.
    PropertiesHandler properties = nullptr;
    /// Told that policies may have changed.
    PoliciesHandler policies = nullptr;
#if defined(__cpp_lib_jthread)
    /// Given tasks.
    TasksHandler tasks = nullptr;
#endif
    /// Told of updates, and asked about the product.
    UpdateHandlers updates = {};
    /// Kept under the product's id for the life of the process, see VsKitHealthCheckRegisterCB: no lambda with
    /// captures, and nothing that is unloaded.
    VsKitHealthCheckCallback healthCheck = nullptr;
    /// Gets what the bridge and the agent say about this product's calls, and, when this product was the first of the
    /// process with one, all lines of the bridge, until any product leaves.
    LogHandler log = nullptr;

    /// The VsMsgbusService bits of the handlers that are set.
    uint32_t Mask() const noexcept {
        uint32_t mask = 0;
        mask |= properties ? VsMsgbusServiceProperty : 0U;
        mask |= policies ? VsMsgbusServicePolicy : 0U;
#if defined(__cpp_lib_jthread)
        mask |= tasks ? VsMsgbusServiceTask : 0U;
#endif
        mask |= updates.IsAnySet() ? VsMsgbusServiceUpdate : 0U;
        return mask;
    }
};

}  // namespace vsmsgbus
