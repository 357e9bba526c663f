#pragma once

#include <utility>

#include "agent/ny_agent.h"
#include "values/AgentException.h"

// Whether handles of this kind can be given back, as far as that depends on memory and the system. What finds out too
// late that it cannot would have to keep the handle for good.
bool CanRelease(const ny_buffer_t* kind) noexcept;
bool CanRelease(const ny_variant_t* kind) noexcept;
bool CanRelease(const ny_table_t* kind) noexcept;
bool CanRelease(const ny_array_t* kind) noexcept;

// Gives a handle back to the agent. The agent's answer, NY_FUNCTION_MISSING when it cannot be reached.
int32_t ReleaseHandle(ny_buffer_t* buffer) noexcept;
int32_t ReleaseHandle(ny_wbuffer_t* buffer) noexcept;
int32_t ReleaseHandle(ny_variant_t* variant) noexcept;
int32_t ReleaseHandle(ny_table_t* table) noexcept;
int32_t ReleaseHandle(ny_array_t* array) noexcept;

// Owns one agent handle, null when empty, and releases it exactly once. Releasing never throws.
template <class Handle>
class AgentHandle {
public:
    AgentHandle() noexcept = default;
    explicit AgentHandle(Handle* owned) noexcept : handle(owned) {}
    ~AgentHandle() { Reset(); }

    AgentHandle(AgentHandle&& other) noexcept : handle(std::exchange(other.handle, nullptr)) {}
    AgentHandle& operator=(AgentHandle&& other) noexcept {
        if (this != &other) {
            Reset();
            handle = std::exchange(other.handle, nullptr);
        }
        return *this;
    }
    AgentHandle(const AgentHandle&) = delete;
    AgentHandle& operator=(const AgentHandle&) = delete;

    Handle* Get() const noexcept { return handle; }
    explicit operator bool() const noexcept { return handle != nullptr; }

    // Releases what is held. What the agent answers, which most may ignore; NY_OK when nothing is held.
    int32_t Reset() noexcept {
        Handle* const released = std::exchange(handle, nullptr);
        return released != nullptr ? ReleaseHandle(released) : NY_OK;
    }

    // Empties the owner and gives the place where an agent call puts its owned result. Raises the agent exception with
    // NY_FUNCTION_MISSING when such a result could not be released.
    Handle** Out() {
        Reset();
        RequireRelease();
        return &handle;
    }

    // To be called before something is owned that comes without Out. Raises as Out does.
    static void RequireRelease() {
        if (!CanRelease(static_cast<const Handle*>(nullptr))) {
            throw corvane::ny::utils::exception(NY_FUNCTION_MISSING);
        }
    }

    // The place of what is held, for an agent call that may put another handle there after releasing this one itself.
    Handle** InOut() noexcept { return &handle; }

    // Gives up what is held without releasing it.
    Handle* Detach() noexcept { return std::exchange(handle, nullptr); }

private:
    Handle* handle = nullptr;
};

using BufferOwner = AgentHandle<ny_buffer_t>;
using VariantOwner = AgentHandle<ny_variant_t>;
using TableOwner = AgentHandle<ny_table_t>;
using ArrayOwner = AgentHandle<ny_array_t>;
