#pragma once

#include <cstdint>

#include "agent/ny_agent.h"
#include "msgbus/instance/VsMsgbusIoContainer.h"

namespace bridge {

// The one place that knows the service classes, see library/ServiceFactory.cpp.

// A new service object of that kind for the agent's client, or null when the library has no such service.
VsMsgbusIoPointer MakeService(int32_t kind, ny_client_t* client);

// Whether the object is of the class that belongs to the kind.
bool IsServiceOfKind(int32_t kind, const VsMsgbusIo& io) noexcept;

}  // namespace bridge
