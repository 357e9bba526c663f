// LoadLibrary and FreeLibrary of the bridge, against libraries of the same toolchain that do nothing.
#include <windows.h>

#include <stdexcept>
#include <string>

#include "bench/host/Measurements.h"

namespace bench {

namespace {

// The seconds of all loads, or of all unloads.
double Loads(size_t count, const char* name, bool isOfUnloads) {
    double loads = 0;
    double unloads = 0;
    for (size_t i = 0; i < count; ++i) {
        HMODULE library = nullptr;
        loads += SecondsOf([&] { library = ::LoadLibraryA(name); });
        if (library == nullptr) {
            throw std::runtime_error(std::string("cannot be loaded: ") + name);
        }
        unloads += SecondsOf([&] { ::FreeLibrary(library); });
        if (::GetModuleHandleA(name) != nullptr) {
            throw std::runtime_error(std::string("still loaded: ") + name);
        }
    }
    return isOfUnloads ? unloads : loads;
}

// One of the libraries that the bridge imports is the system's for the registry, which brings two more. A host that has
// it already pays for the bridge alone.
void Race(Session& session, bool isOfUnloads, bool hasRegistry) {
    const HMODULE registry = hasRegistry ? ::LoadLibraryA("ADVAPI32.dll") : nullptr;
    const auto way = [=](const char* title, const char* name) {
        return Contender{title, [=](size_t count) { return Loads(count, name, isOfUnloads); }};
    };
    session.Race({"loading",
                  std::string(isOfUnloads ? "FreeLibrary" : "LoadLibrary") + (hasRegistry ? "" : ", ADVAPI32 with it"),
                  0,
                  1,
                  {way("ours", "VsMsgbus.dll"), way("does nothing", "bench_nothing.dll"),
                   way("does nothing, with another", "bench_beside.dll")},
                  hasRegistry ? std::optional(1.5) : std::nullopt});
    if (registry != nullptr) {
        ::FreeLibrary(registry);
    }
}

}  // namespace

void MeasureLoading(Session& session) {
    for (const bool hasRegistry : {true, false}) {
        Race(session, false, hasRegistry);
        Race(session, true, hasRegistry);
    }
}

}  // namespace bench
