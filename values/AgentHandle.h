#pragma once

#include <utility>

#include "agent/ny_agent.h"
#include "dispatcher/LibrariesInUse.h"
#include "values/AgentException.h"

namespace bridge {

// The agent's function that takes handles of this kind back: that of the libraries in `inUse` or, with null, of those
// that are open now. Null when it cannot be reached. The first argument only chooses the overload by its type.
template <class Handle>
using ReleaseFunction = int32_t (*)(Handle* handle);
ReleaseFunction<ny_buffer_t> FindRelease(const ny_buffer_t* kind, const LibrariesInUse* inUse) noexcept;
ReleaseFunction<ny_variant_t> FindRelease(const ny_variant_t* kind, const LibrariesInUse* inUse) noexcept;
ReleaseFunction<ny_table_t> FindRelease(const ny_table_t* kind, const LibrariesInUse* inUse) noexcept;
ReleaseFunction<ny_array_t> FindRelease(const ny_array_t* kind, const LibrariesInUse* inUse) noexcept;

// Owns one agent handle, null when empty, and releases it exactly once, to the library that made it. Releasing never
// throws. Its owner is a thread that is inside the agent's libraries, see LibrariesInUse.
template <class Handle>
class AgentHandle {
public:
    AgentHandle() noexcept = default;
    ~AgentHandle() { Reset(); }

    AgentHandle(AgentHandle&& other) noexcept : handle(std::exchange(other.handle, nullptr)), release(other.release) {}
    AgentHandle& operator=(AgentHandle&& other) noexcept {
        if (this != &other) {
            Reset();
            handle = std::exchange(other.handle, nullptr);
            release = other.release;
        }
        return *this;
    }
    AgentHandle(const AgentHandle&) = delete;
    AgentHandle& operator=(const AgentHandle&) = delete;

    Handle* Get() const noexcept { return handle; }
    explicit operator bool() const noexcept { return handle != nullptr; }

    // Releases the handle and returns the agent's answer, which most callers ignore; NY_OK for an empty owner.
    int32_t Reset() noexcept {
        Handle* const released = std::exchange(handle, nullptr);
        return released != nullptr ? release(released) : NY_OK;
    }

    // Empties the owner and gives the place where an agent call puts its owned result, which goes back to the libraries
    // given, or to those that are open now. Raises the agent exception with NY_FUNCTION_MISSING when such a result
    // could not be released: the library lacks the function for it, cannot be loaded, or was closed.
    Handle** Out(const LibrariesInUse* inUse = nullptr) {
        Reset();
        release = FindRelease(static_cast<const Handle*>(nullptr), inUse);
        if (release == nullptr) {
            throw AgentException(NY_FUNCTION_MISSING);
        }
        return &handle;
    }

    // The handle's place, for an agent call that may release the handle itself and put another one there.
    Handle** InOut() noexcept { return &handle; }

private:
    Handle* handle = nullptr;
    ReleaseFunction<Handle> release = nullptr;  // set before there is a handle
};

using BufferOwner = AgentHandle<ny_buffer_t>;
using VariantOwner = AgentHandle<ny_variant_t>;
using TableOwner = AgentHandle<ny_table_t>;
using ArrayOwner = AgentHandle<ny_array_t>;

}  // namespace bridge
