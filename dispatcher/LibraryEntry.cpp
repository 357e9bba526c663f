#include "dispatcher/LibraryEntry.h"

#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <utility>

#include "agent/ny_agent.h"
#include "base/Boundary.h"
#include "dispatcher/DispatcherLog.h"

namespace bridge {

namespace {
constexpr size_t functionNameCapacity = 256;
}  // namespace

int32_t LibraryEntry::Open(const char* path, const DispatcherLog& log) noexcept {
    return Guarded<int32_t>(NY_OUT_OF_MEMORY, [&]() -> int32_t {
        auto opened = std::make_shared<LoadedLibrary>();
        log.Write(SeverityProgress, "dispatcher dl_open %s %d", path, 0);
        const uint32_t result = ny_dl_open(path, 0, &opened->module);
        if (result != 0) {
            log.Write(SeverityProgress, "dispatcher dl_open failed, error <%d>, errno<%d>", static_cast<int>(result),
                      static_cast<int>(::GetLastError()));
            return static_cast<int32_t>(result);
        }
        library = std::move(opened);
        module = library->module;
        log.Write(SeverityProgress, "dispatcher dl_open success %p", module.module);
        isLoaded = true;
        references.store(1);
        return NY_OK;
    });
}

void LibraryEntry::Close(const DispatcherLog& log) noexcept {
    if (!isLoaded) {
        return;
    }
    isLoaded = false;
    log.Write(SeverityProgress, "dispatcher dl_close %p", module.module);
    // The pointers go first: a thread that reads one from now on loads again instead of calling into a closed library.
    for (const LoadedLibrary::HandedOut& table : library->tables) {
        table.holder->store(nullptr, std::memory_order_release);
    }
    libraryClosings.fetch_add(1, std::memory_order_release);
    library.reset();
    module = {};
    if (version != nullptr) {
        *version = 0;
        version = nullptr;
    }
}

void* LibraryEntry::Resolve(const char* name, const DispatcherLog& log) noexcept {
    log.Write(SeverityDetail, "dispatcher dl_sym %p, %s", module.module, name);
    void* address = ny_dl_sym(&module, name);
    if (address != nullptr) {
        log.Write(SeverityDetail, "dispatcher dl_sym %p, %s found", module.module, name);
    } else {
        log.Write(SeverityProgress, "dispatcher dl_sym %p, %s not found, last error <%d>", module.module, name,
                  static_cast<int>(::GetLastError()));
    }
    return address;
}

int32_t LibraryEntry::LoadSymbols(const char* const* names, TablePointer& table, size_t count,
                                  const DispatcherLog& log) noexcept {
    auto& tables = library->tables;
    const auto isListed = [&table](const LoadedLibrary::HandedOut& handedOut) { return handedOut.holder == &table; };
    if (std::any_of(tables.begin(), tables.end(), isListed)) {
        return NY_OK;
    }
    return Guarded<int32_t>(NY_OUT_OF_MEMORY, [&]() -> int32_t {
        SymbolTable addresses = std::make_unique<void*[]>(count);
        void** const resolved = addresses.get();
        tables.push_back({&table, std::move(addresses)});
        for (size_t i = 0; i < count; ++i) {
            resolved[i] = Resolve(names[i], log);
        }
        table.store(resolved, std::memory_order_release);
        return NY_OK;
    });
}

GetVersionFunction LibraryEntry::FindGetVersion(const char* group, const DispatcherLog& log) noexcept {
    char name[functionNameCapacity] = {};
    std::snprintf(name, sizeof name - 1, "%s%s", group, "_get_version");
    return reinterpret_cast<GetVersionFunction>(Resolve(name, log));
}

}  // namespace bridge
