#pragma once

#include <utility>

#include "agent/ny_agent.h"

// Gives a handle back to the agent. The agent's answer, and an agent that cannot be reached, are ignored.
void ReleaseHandle(ny_buffer_t* buffer) noexcept;
void ReleaseHandle(ny_wbuffer_t* buffer) noexcept;
void ReleaseHandle(ny_variant_t* variant) noexcept;
void ReleaseHandle(ny_table_t* table) noexcept;
void ReleaseHandle(ny_array_t* array) noexcept;

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

    // Releases what is held.
    void Reset() noexcept {
        if (Handle* released = std::exchange(handle, nullptr)) {
            ReleaseHandle(released);
        }
    }

    // Empties the owner and gives the place where an agent call puts its owned result.
    Handle** Out() noexcept {
        Reset();
        return &handle;
    }

    // The place of what is held, for an agent call that may put another handle there after releasing this one itself.
    Handle** InOut() noexcept { return &handle; }

    // Gives up what is held without releasing it.
    Handle* Detach() noexcept { return std::exchange(handle, nullptr); }

private:
    Handle* handle = nullptr;
};

using BufferOwner = AgentHandle<ny_buffer_t>;
using WideBufferOwner = AgentHandle<ny_wbuffer_t>;
using VariantOwner = AgentHandle<ny_variant_t>;
using TableOwner = AgentHandle<ny_table_t>;
using ArrayOwner = AgentHandle<ny_array_t>;
