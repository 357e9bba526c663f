#pragma once

#include <windows.h>

#include <functional>
#include <stdexcept>
#include <string>

#include "ny_simulator.h"
#include "support/LineLog.h"
#include "throws/module/ThrowingModule.h"

// The agent's handles that are alive, clients aside.
inline size_t HandlesInUse() {
    return ny_sim_live_handles(NY_SIM_ANY) - ny_sim_live_handles(NY_SIM_CLIENT);
}

// The module that throws, loaded from the current folder, with the bridge that stands beside it there; natively with
// the program's.
class LoadedThrowingModule {
public:
    LoadedThrowingModule() : library(Load("throwing_module.dll")) {
        if (library == nullptr) {
            throw std::runtime_error("cannot load the module");
        }
        offered = Find<decltype(GetThrowingModule)>("GetThrowingModule")();
        throwAt = Find<decltype(ThrowAt)>("ThrowAt");
        countThrows = Find<decltype(CountThrows)>("CountThrows");
        countObjects = Find<decltype(CountThrownObjects)>("CountThrownObjects");
        tellTo = Find<decltype(ThrowingModuleTellTo)>("ThrowingModuleTellTo");
        tellTo(&Note, this);
    }
    ~LoadedThrowingModule() {
        tellTo(nullptr, nullptr);
        ::FreeLibrary(library);
    }
    LoadedThrowingModule(const LoadedThrowingModule&) = delete;
    LoadedThrowingModule& operator=(const LoadedThrowingModule&) = delete;

    const ThrowingModule* operator->() const { return offered; }

    void ThrowFrom(Place place, Thrown thrown, Catcher catcher = Catcher::Bridge) const {
        throwAt(place, thrown, catcher);
    }
    void ThrowNothing(Catcher catcher = Catcher::Bridge) const { throwAt(Place::Nowhere, Thrown::Number, catcher); }
    int32_t Throws() const { return countThrows(); }
    ThrownObjects Objects() const { return countObjects(); }

    // The lines that the module has told. Behind "walks" and "caught" stands how many handles of the agent's were in
    // use.
    LineLog log;

private:
    static HMODULE Load(const char* file) {
#ifdef _WIN32
        char path[MAX_PATH] = {};
        ::GetFullPathNameA(file, MAX_PATH, path, nullptr);
        return ::LoadLibraryExA(path, nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
#else
        return ::LoadLibraryA(file);
#endif
    }

    template <class Function>
    Function* Find(const char* name) const {
        auto* const function = reinterpret_cast<Function*>(reinterpret_cast<void*>(::GetProcAddress(library, name)));
        if (function == nullptr) {
            throw std::runtime_error(std::string("the module does not export ") + name);
        }
        return function;
    }

    static void Note(const char* text, void* self) {
        std::string line(text);
        if (line == "walks" || line.starts_with("caught")) {
            line += ", handles " + std::to_string(HandlesInUse());
        }
        static_cast<LoadedThrowingModule*>(self)->log.Add(std::move(line));
    }

    HMODULE library;
    const ThrowingModule* offered = nullptr;
    decltype(ThrowAt)* throwAt = nullptr;
    decltype(CountThrows)* countThrows = nullptr;
    decltype(CountThrownObjects)* countObjects = nullptr;
    decltype(ThrowingModuleTellTo)* tellTo = nullptr;
};
