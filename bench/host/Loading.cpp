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

}  // namespace

// The system's libraries that the bridge imports are loaded already, as in any host: this program imports the
// registry's, too.
void MeasureLoading(Session& session) {
    for (const bool isOfUnloads : {false, true}) {
        const auto way = [=](const char* title, const char* name) {
            return Contender{title, [=](size_t count) { return Loads(count, name, isOfUnloads); }};
        };
        session.Race({"loading",
                      isOfUnloads ? "FreeLibrary" : "LoadLibrary",
                      0,
                      1,
                      {way("ours", "VsMsgbus.dll"), way("does nothing", "bench_nothing.dll"),
                       way("does nothing, with another", "bench_beside.dll")},
                      1.5});
    }
}

}  // namespace bench
