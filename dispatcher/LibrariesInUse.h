// The agent's libraries in memory, and the owners that keep them there.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <vector>

#include "VsMsgbus/ny_dl.h"

namespace bridge {

// The address table of a group of functions: entry i holds the address of name i, or null when the library does not
// export it. Owned by the library that it was resolved from.
using SymbolTable = std::unique_ptr<void*[]>;

// Where a caller keeps its pointer to such a table: null until loaded and again once the library is closed. Read
// without a lock by the entry points.
using TablePointer = std::atomic<void**>;

// How many libraries were closed so far. Addresses of the agent's functions that were looked up are those of the agent
// that runs now only while this number is unchanged.
inline std::atomic<uint64_t> libraryClosings = 0;
inline constexpr uint64_t noClosings = UINT64_MAX;  // never the number

// A library file of the agent's in memory, with the tables resolved from it. Shared by the dispatcher, until it closes
// the library, and by the LibrariesInUse that were there meanwhile: the system unloads it when the last of them lets
// go.
struct LoadedLibrary {
    LoadedLibrary() = default;
    ~LoadedLibrary() { ny_dl_close(&module); }
    LoadedLibrary(const LoadedLibrary&) = delete;
    LoadedLibrary& operator=(const LoadedLibrary&) = delete;

    struct HandedOut {
        TablePointer* holder;
        SymbolTable addresses;
    };

    ny_dl_t module{};
    std::vector<HandedOut> tables;
};

// The libraries that are open, and those opened while this object lives. An export that calls the agent, a call from
// the agent and a client each share one for as long as they last: meanwhile no library is unloaded, their handles go
// back to the library that made them, and functions that they have looked up may be called.
//
// When a thread of the agent's is the last to let go, a thread of the bridge's does the unloading, because the agent's
// thread still returns into the library.
class LibrariesInUse {
public:
    // The libraries of the process's dispatcher; null when there is no dispatcher. Raises std::bad_alloc.
    static std::shared_ptr<LibrariesInUse> Share();

    // Adds a library that was opened. The caller holds the dispatcher's lock. Raises std::bad_alloc.
    void Add(const std::shared_ptr<LoadedLibrary>& library);

    // Whether no library was closed since this object was made.
    bool AreCurrent() const noexcept { return closings == libraryClosings.load(std::memory_order_acquire); }

private:
    uint64_t closings = noClosings;
    std::vector<std::shared_ptr<LoadedLibrary>> libraries;  // under the dispatcher's lock
};

}  // namespace bridge
