#pragma once

#include <cstdint>
#include <memory>
#include <string>

namespace bridge {

// The kinds of service objects. Each equals the bit of its service in the mask of VsMsgbusEntry.
enum VsMsgbusIoKind : int32_t {
    IoKindUpdate = 256,
    IoKindTask = 2048,
    IoKindPolicy = 4096,
    IoKindProperty = 8192,
};

// A service object: what the agent calls for one kind of request, for every product registered with it.
class VsMsgbusIo : public std::enable_shared_from_this<VsMsgbusIo> {
public:
    virtual ~VsMsgbusIo() = default;

    // Registers this service with the agent for a product; does nothing for one that is registered. Raises the agent
    // exception when the agent refuses.
    virtual void RegisterProduct(const std::string& /*productId*/) {}

    // Ends that registration; does nothing for a product that has none. Raises the agent exception when the agent
    // refuses: the registration then stays.
    virtual void UnregisterProduct(const std::string& /*productId*/) {}

    // Ends every registration that is left and lets none be made any more: what must have happened before the object
    // is destroyed. Tries all of them, then raises the agent exception with the first code that was a refusal.
    virtual void UnregisterAll() {}
};

}  // namespace bridge
