#pragma once

#include <windows.h>

#include <map>
#include <string>

#include "support/SystemFunction.h"

// While it lives, the agent's functions that are resolved are those of the test where it has one of that name: for
// answers that the simulated agent never gives. One at a time; what was resolved before stays.
class AgentFunctionsReplaced {
public:
    AgentFunctionsReplaced() { current = this; }

    template <class Function>
    void Replace(const std::string& name, Function* function) {
        functions[name] = reinterpret_cast<FARPROC>(reinterpret_cast<void*>(function));
    }

private:
    static FARPROC WINAPI Resolve(HMODULE library, const char* name) {
        const auto found = current->functions.find(name);
        return found != current->functions.end() ? found->second : current->resolving.original(library, name);
    }

    static inline AgentFunctionsReplaced* current = nullptr;
    std::map<std::string, FARPROC> functions;
    SystemFunction<decltype(::GetProcAddress)> resolving{&::GetProcAddress, &Resolve};
};
