#pragma once

#include <memory>

#include "base/CallGate.h"
#include "base/ModuleCall.h"
#include "base/SharedSlot.h"

namespace bridge {

// A place for one interface of a module's that threads call while another thread takes it away.
template <class Interface>
class ModuleSlot {
public:
    // The interface's address, to be compared; null when there is none.
    const Interface* Address() const noexcept {
        const auto shared = slot.Share();
        return shared != nullptr ? shared->module.Address() : nullptr;
    }

    // Puts the interface in unless there is one. Returns whether it did. Raises std::bad_alloc.
    bool Offer(Interface* offered) { return slot.Address() == nullptr && slot.Offer(std::make_shared<InUse>(offered)); }

    // Puts the interface, null for none, in the place of the one there is, and waits, at most 15 seconds, until that
    // one is not called any more on other threads. It is returned for the module that it belongs to. Raises
    // std::bad_alloc before anything has changed.
    Interface* Exchange(Interface* next) {
        const auto replaced = slot.Exchange(next != nullptr ? std::make_shared<InUse>(next) : nullptr);
        if (replaced == nullptr) {
            return nullptr;
        }
        replaced->gate.CloseAndWait();
        return replaced->module.HandBack();
    }

    // Calls an operation of the interface, if there is one. Lets out what ModulePointer does.
    template <class Operation, class... Arguments>
    void Call(CallGate::Admission admission, Operation operation, const Arguments&... arguments) const {
        const auto shared = slot.Share();
        if (shared == nullptr) {
            return;
        }
        const CallGate::Call call(shared->gate, admission);
        if (call) {
            shared->module.Call(operation, arguments...);
        }
    }

private:
    // Shared by the calls that are under way.
    struct InUse {
        explicit InUse(Interface* moduleInterface) noexcept : module(moduleInterface) {}

        const ModulePointer<Interface> module;
        CallGate gate;
    };

    SharedSlot<InUse> slot;
};

}  // namespace bridge
