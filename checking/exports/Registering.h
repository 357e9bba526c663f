// The common parts of the exports that register interfaces.
#pragma once

#include <memory>
#include <utility>

#include "base/Boundary.h"
#include "checking/Findings.h"
#include "checking/Keep.h"
#include "checking/LaterChecks.h"
#include "checking/LoaderLock.h"
#include "checking/Registration.h"
#include "checking/Scope.h"
#include "checking/Texts.h"
#include "checking/Waits.h"
#include "checking/Watch.h"

namespace checking {

// Has `set`, the bridge's export, register a Wrapper around the module's interface, with `context` as its last
// argument. Without memory for a wrapper, the interface itself.
template <class Wrapper, class Interface, class... More>
bool SetInterface(const ServiceText& service, const wchar_t* productId, Interface* moduleInterface,
                  bool (*set)(const wchar_t*, Interface*, void*) noexcept, void* context,
                  const More&... more) noexcept {
    std::shared_ptr<Wrapper> wrapper;
    bool isFirst = false;
    Noted([&] {
        const Scope scope(service.set, productId);
        if (productId == nullptr || moduleInterface == nullptr) {
            Report(Rule::SetNull, Narrow(productId), {service.set, productId == nullptr ? "id" : service.noun});
            return;
        }
        Watch::OfProcess().LookAtId(service.set, productId);
        const auto made = std::make_shared<Wrapper>(productId, moduleInterface, more...);
        isFirst = Watch::OfProcess().Add(made);
        if (!isFirst) {
            Report(Rule::SetTwice, made->NarrowId(), {service.noun});
            KeepForNow(made);
        }
        // Set only now, when Watch or KeepForNow keeps the object alive, too.
        wrapper = made;
    });
    const bool answer =
        set(productId, wrapper != nullptr ? static_cast<Interface*>(wrapper.get()) : moduleInterface, context);
    Noted([&] {
        if (isFirst && !answer) {
            KeepForNow(Watch::OfProcess().Remove(service, productId));
        }
    });
    CheckLater();
    return answer;
}

// Has `remove`, the bridge's export, take the registration away.
inline bool RemoveInterface(const ServiceText& service, const wchar_t* productId,
                            bool (*remove)(const wchar_t*) noexcept) noexcept {
    const Scope scope(service.remove, productId);
    LookAtLoaderLock(service.remove, scope.ProductId());
    bool answer = true;
    // The wrapper stays alive until the bridge has let go of it, also when memory runs out.
    RegistrationPointer registration;
    const bool isChecked = Noted([&] {
        registration = productId != nullptr ? Watch::OfProcess().Remove(service, productId) : nullptr;
        if (registration == nullptr) {
            Report(Rule::RemoveUnknown, Narrow(productId), {service.remove, service.noun});
            answer = remove(productId);
            return;
        }
        KeepForNow(registration);
        if (registration->IsThisThreadInside()) {
            Report(Rule::RemoveInside, registration->NarrowId(), {service.remove, "a callback"});
            answer = remove(productId);
            registration->BeRemoved();
            return;
        }
        {
            const Wait wait(service.remove, {registration});
            answer = remove(productId);
            registration->BeRemoved();
        }
        if (const auto inside = registration->InsiderOnOtherThread()) {
            Report(Rule::RemoveGaveUp, registration->NarrowId(),
                   {service.remove, std::to_string(inside->thread), inside->function});
        }
    });
    return isChecked ? answer : remove(productId);
}

}  // namespace checking
