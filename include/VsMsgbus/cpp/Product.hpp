/// @file
/// A product in the bridge, as one object.
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "VsMsgbus/Entry.h"
#include "VsMsgbus/cpp/Error.hpp"
#include "VsMsgbus/cpp/Handlers.hpp"
#include "VsMsgbus/cpp/ProductInterfaces.hpp"
#include "VsMsgbus/cpp/Text.hpp"

namespace vsmsgbus {

/// A product that is in the bridge from its construction to Leave, or to its end at the latest. Make and end products
/// one at a time in a process, never in DllMain. An object may be moved, and may end, while handlers run.
///
/// An id is one product's at a time. Within a module a second product of the id is refused. Across the modules of a
/// process it is not refused, because each of them has a copy of this layer: there the handlers of the first product
/// stay those that are called for a service of both, and the product that leaves first takes the other one out of the
/// bridge and, for its own services, the other one's handlers away. Give each module ids of its own.
class Product {
public:
    /// Registers what the handlers are for and enters the bridge with it. Throws Error, with nothing left behind, when
    /// the id is empty, when a product of this module has it and has not left, when no service has a handler, or when
    /// memory or the agent's client could not be had. An absent agent is no error.
    ///
    /// @param productId  one id for everything, UTF-8; the agent must use the same, letter for letter
    /// @param handlers   what the product does
    Product(std::string_view productId, Handlers handlers) : id(productId), mask(handlers.Mask()) {
        Require(!id.empty() && id.find('\0') == std::string::npos, "The product id must be a text that is not empty.");
        Require(mask != 0, "Set a handler for properties, policies, tasks or updates.");
        const VsKitHealthCheckCallback healthCheck = handlers.healthCheck;
        parts = std::make_shared<detail::ProductParts>(Wide(id), std::move(handlers));
        Require(parts->takenId.Take(),
                "This module has a product of that id in the bridge: have it leave first, or give it the handlers of "
                "both.");
        if (!Register() || !Enter()) {
            Leave();
            throw Error(Doing(), 0, "Memory ran out, or the agent's client could not be created.");
        }
        if (healthCheck != nullptr) {
            VsKitHealthCheckRegisterCB(parts->id.c_str(), healthCheck);
        }
    }

    ~Product() { Leave(); }
    /// The other one is out afterwards, and this one in its place; handlers that run go on.
    Product(Product&&) noexcept = default;
    /// Leaves first.
    Product& operator=(Product&& other) noexcept {
        if (this != &other) {
            Leave();
            id = std::move(other.id);
            mask = other.mask;
            bridge = std::exchange(other.bridge, nullptr);
            isRefused = other.isRefused;
            parts = std::move(other.parts);
        }
        return *this;
    }

    /// As it was given.
    const std::string& Id() const noexcept { return id; }
    /// The VsMsgbusService bits that it entered with.
    uint32_t Mask() const noexcept { return mask; }
    /// Whether the agent refused one of the services when the product entered. The product is in, and the bridge asks
    /// again when the agent starts anew.
    bool IsRefused() const noexcept { return isRefused; }

    /// Asks the agent to tell the product of its policies again; false when it does not.
    bool EnforcePolicies() const { return parts != nullptr && VsKitEnforceLocalPolicy(parts->id.c_str()) == 1; }

    /// Leaves the bridge: stops the tasks and waits until they have ended and the agent knows, at most 15 seconds;
    /// waits for the handlers that run on other threads, at most 15 seconds for each service; and takes everything
    /// back. A task on a thread of its own ends a second after its begin at the earliest.
    ///
    /// @returns whether everything is out, so that the module may be unloaded. False when a handler or a task still
    /// runs, the handler that calls this among them: what it uses stays until it ends. True when the product has left
    /// before.
    bool Leave() noexcept {
        if (parts == nullptr) {
            return true;
        }
        const auto leaving = std::exchange(parts, nullptr);
        const wchar_t* const wideId = leaving->id.c_str();
        const auto latest = std::chrono::steady_clock::now() + std::chrono::seconds(15);
        EndTasks(*leaving, latest);
        if (bridge != nullptr) {
            VsMsgbusExit(id.c_str(), std::exchange(bridge, nullptr));
        }
        if ((mask & VsMsgbusServiceProperty) != 0) {
            VsKitMsgbusRemoveCollectProperties(wideId);
        }
        if ((mask & VsMsgbusServicePolicy) != 0) {
            VsKitMsgbusRemoveEnforcerPolicy(wideId);
        }
        if ((mask & VsMsgbusServiceTask) != 0) {
            VsKitMsgbusRemoveTaskEnforcer(wideId);
        }
        if ((mask & VsMsgbusServiceUpdate) != 0) {
            VsKitMsgbusRemoveUpdateNotify(wideId);
        }
        leaving->takenId.GiveBack();
        const bool areTasksOut = WaitForTasks(*leaving, latest);
        return leaving->inside == 0 && areTasksOut;
    }

private:
    std::string Doing() const { return "entering the bridge as " + id; }

    void Require(bool isMet, const char* remedy) const {
        if (!isMet) {
            throw Error(Doing(), 0, remedy);
        }
    }

    bool Register() const {
        const wchar_t* const wideId = parts->id.c_str();
        detail::Log* const sink = parts->log.get();
        return ((mask & VsMsgbusServiceProperty) == 0 ||
                VsKitMsgbusSetCollectProperties(wideId, &parts->collector, sink)) &&
               ((mask & VsMsgbusServicePolicy) == 0 || VsKitMsgbusSetEnforcePolicy(wideId, &parts->enforcer, sink)) &&
#if defined(__cpp_lib_jthread)
               ((mask & VsMsgbusServiceTask) == 0 ||
                VsKitMsgbusSetTaskEnforcer(wideId, &parts->taskEnforcer, nullptr)) &&
#endif
               ((mask & VsMsgbusServiceUpdate) == 0 || VsKitMsgbusSetUpdateNotify(wideId, &parts->updates, nullptr));
    }

    bool Enter() {
        detail::Log* const sink = parts->log->IsWanted() ? parts->log.get() : nullptr;
        isRefused = !VsMsgbusEntry(id.c_str(), mask, sink, &bridge);
        return bridge != nullptr;
    }

    using Time = std::chrono::steady_clock::time_point;

    // While the product is still in the bridge: their last reports go through it.
    static void EndTasks([[maybe_unused]] detail::ProductParts& leaving, [[maybe_unused]] Time latest) noexcept {
#if defined(__cpp_lib_jthread)
        leaving.tasks->StopAll();
        leaving.tasks->WaitForWork(latest);
#endif
    }

    // Also for those that the agent began meanwhile.
    static bool WaitForTasks([[maybe_unused]] detail::ProductParts& leaving, [[maybe_unused]] Time latest) noexcept {
#if defined(__cpp_lib_jthread)
        return leaving.tasks->WaitForAll(latest);
#else
        return true;
#endif
    }

    std::string id;
    uint32_t mask = 0;
    VsMsgbus* bridge = nullptr;
    bool isRefused = false;
    std::shared_ptr<detail::ProductParts> parts;
};

}  // namespace vsmsgbus
