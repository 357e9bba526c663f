// host [MODULE]: loads the module, MyModule.dll if none is named, on a machine on which the simulated agent is
// installed, has the agent ask it for its properties, and prints them. The machine is pretended: what is written to
// HKEY_LOCAL_MACHINE is this program's own.
#include <windows.h>

#include <exception>
#include <iostream>
#include <stdexcept>
#include <string>

#include <vsmsgbus_testing.hpp>

#include "MyModule.h"

namespace {

void Demand(bool isTrue, const std::string& whatIsWrong) {
    if (!isTrue) {
        throw std::runtime_error(whatIsWrong);
    }
}

bool CallModule(HMODULE module, const char* function) {
    using Function = bool (*)();
    const auto address = reinterpret_cast<Function>(reinterpret_cast<void*>(::GetProcAddress(module, function)));
    return address != nullptr && address();
}

void Run(const std::string& file) {
    vsmsgbus::testing::Machine machine;
    machine.InstallAgent();
    const HMODULE module = ::LoadLibraryA(file.c_str());
    Demand(module != nullptr, file + " cannot be loaded, code " + std::to_string(::GetLastError()));
    Demand(CallModule(module, "MyModuleLoad"), "the module did not enter the bridge");
    std::cout << machine.AskProperties(myProductId).Text();
    Demand(CallModule(module, "MyModuleUnload"), "the module did not leave the bridge");
    Demand(::FreeLibrary(module) != 0, "the module cannot be unloaded");
    machine.ExpectNothingLeft();
    std::cout << "the module has left\n";
}

}  // namespace

int main(int count, char** arguments) {
    try {
        Run(count > 1 ? arguments[1] : "MyModule.dll");
        return 0;
    } catch (const std::exception& failure) {
        std::cerr << failure.what() << '\n';
        return 1;
    }
}
