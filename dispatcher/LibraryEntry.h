#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "dispatcher/LibrariesInUse.h"

namespace bridge {

class DispatcherLog;

using GetVersionFunction = int32_t (*)(uint32_t* version);

// One library file of the agent's that is open, with everything that was handed out from it. Touched by one thread at
// a time, under the dispatcher's lock.
struct LibraryEntry {
    explicit LibraryEntry(const char* name) : fileName(name) {}

    // Opens the file `path`. Returns NY_OK or the operating system's error code.
    int32_t Open(const char* path, const DispatcherLog& log) noexcept;

    // Closes the library when it is open: sets every caller's table pointer to null and the version variable to 0, so
    // that the next call through an entry point loads again. The system unloads it once no thread is inside any more.
    void Close(const DispatcherLog& log) noexcept;

    // Resolves `count` names into a new table and stores it into `table`, which Close will set to null. Does nothing
    // when it has filled this table pointer before. Returns NY_OK or NY_OUT_OF_MEMORY.
    int32_t LoadSymbols(const char* const* names, TablePointer& table, size_t count, const DispatcherLog& log) noexcept;

    // The library's own "<group>_get_version", null when it has none, which is no error.
    GetVersionFunction FindGetVersion(const char* group, const DispatcherLog& log) noexcept;

    ny_dl_t module{};  // first, so that an entry can stand for a library handle
    std::atomic<uint32_t> references = 0;
    bool isLoaded = false;
    uint32_t* version = nullptr;  // the caller's variable, once the library filled it
    std::string fileName;
    std::shared_ptr<LoadedLibrary> library;  // null when it is not open

private:
    void* Resolve(const char* name, const DispatcherLog& log) noexcept;
};

}  // namespace bridge
