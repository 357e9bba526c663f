#pragma once

#include "dispatcher/EntryPoint.h"

namespace bridge {

// The agent's functions for policies, looked up once for a walk or a question, so that a handle is opened, read and
// closed through one library. Used by a thread that is inside the agent's libraries.
class PolicyFunctions {
public:
    // Looks them up in the libraries `inUse`, or in those that are open when it is null. Loads their library when it is
    // not open.
    explicit PolicyFunctions(const LibrariesInUse* inUse) noexcept;

    // One of the functions. It answers NY_FUNCTION_MISSING when it cannot be reached.
    template <class Entry>
    auto operator()(const Entry& entry) const noexcept {
        return entry.In(table);
    }

    // The libraries that hold them.
    const LibrariesInUse* Libraries() const noexcept { return libraries; }

private:
    const LibrariesInUse* libraries;
    void* const* table;
};

}  // namespace bridge
