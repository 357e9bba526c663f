#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "VsMsgbus/ny_dl.h"

class DispatcherLog;

// The address table of a group of functions: entry i holds the address of name i, or null when the library does not
// export it. Owned by the library entry that resolved it.
using SymbolTable = std::unique_ptr<void*[]>;

// Where a caller keeps its pointer to such a table: null until loaded and again once the library is closed. Read
// without a lock by the entry points.
using TablePointer = std::atomic<void**>;

// How many libraries were closed so far. Who keeps addresses of an agent's functions remembers the number from before
// it looked them up, and calls them only while it is the same.
inline std::atomic<uint64_t> libraryClosings = 0;
inline constexpr uint64_t noClosings = UINT64_MAX;  // never the number

// One library file of the agent's that is open, with everything that was handed out from it. Touched by one thread at
// a time, under the dispatcher's lock.
struct LibraryEntry {
    explicit LibraryEntry(const char* name) : fileName(name) {}

    // Opens the file `path`. Returns NY_OK or the operating system's error code.
    int32_t Open(const char* path, const DispatcherLog& log) noexcept;

    // Closes the library when it is open: sets every caller's table pointer to null and the version variable to 0, so
    // that the next call through an entry point loads again.
    void Close(const DispatcherLog& log) noexcept;

    // Resolves `count` names into a new table, remembers who holds it and stores it into `table`. Does nothing when it
    // listed this table pointer before. Returns NY_OK or NY_OUT_OF_MEMORY.
    int32_t LoadSymbols(const char* const* names, TablePointer& table, size_t count, const DispatcherLog& log) noexcept;

    // Has the library's own "<group>_get_version" fill `version`. A library without one is not at fault.
    void LoadVersion(const char* group, uint32_t& version, const DispatcherLog& log) noexcept;

    struct HandedOut {
        TablePointer* holder;
        SymbolTable addresses;
    };

    ny_dl_t module{};  // first, so that an entry can stand for a library handle
    std::atomic<uint32_t> references = 0;
    bool isLoaded = false;
    uint32_t* version = nullptr;  // the caller's variable, once the library filled it
    std::string fileName;
    std::vector<HandedOut> tables;

private:
    void* Resolve(const char* name, const DispatcherLog& log) noexcept;
};
