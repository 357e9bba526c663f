// host [MODULE]: loads the module, MyModule.dll if none is named, on a machine on which the simulated agent is
// installed, has the agent ask it for its properties, and prints them. The machine is pretended: what is written to
// HKEY_LOCAL_MACHINE is this program's own.
#include <windows.h>

#include <cstdint>
#include <exception>
#include <filesystem>
#include <iostream>
#include <stdexcept>
#include <string>

#include <AgentInstaller.h>
#include <RegistryRedirect.h>
#include <ny_simulator.h>

#include "MyModule.h"

namespace fs = std::filesystem;
using simulator::AgentInstaller;

namespace {

// A machine with the agent: installed at the start, removed at the end.
class Machine {
public:
    Machine()
        : installer(AgentInstaller::BuildsBesideProgram(),
                    fs::temp_directory_path() / ("agent-" + std::to_string(::GetCurrentProcessId()))) {
        installer.Install("5.7.0");
    }
    ~Machine() {
        try {
            installer.Remove();
        } catch (const std::exception& failure) {
            std::cerr << failure.what() << '\n';
        }
    }
    Machine(const Machine&) = delete;
    Machine& operator=(const Machine&) = delete;

private:
    simulator::RegistryRedirect redirect;
    AgentInstaller installer;
};

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

void PrintProperties(const char* productId) {
    ny_sim_property_request_t* request = nullptr;
    Demand(ny_sim_request_properties(productId, &request) == NY_OK,
           std::string("the agent has no collector of the product ") + productId);
    constexpr uint32_t tenSeconds = 10000;
    int32_t answer = NY_UNEXPECTED;
    const bool isAnswered = ny_sim_property_request_wait(request, tenSeconds, &answer) == NY_OK;
    for (size_t i = 0; i < ny_sim_property_request_size(request); ++i) {
        const char* path = nullptr;
        const char* name = nullptr;
        const char* value = nullptr;
        if (ny_sim_property_request_get(request, i, &path, &name, &value) == NY_OK) {
            std::cout << path << ": " << name << " = " << value << '\n';
        }
    }
    ny_sim_property_request_release(request);
    Demand(isAnswered && answer == NY_OK, "the module did not answer well");
}

void Run(const std::string& file) {
    const Machine machine;
    const HMODULE module = ::LoadLibraryA(file.c_str());
    Demand(module != nullptr, file + " cannot be loaded, code " + std::to_string(::GetLastError()));
    Demand(CallModule(module, "MyModuleLoad"), "the module did not enter the bridge");
    PrintProperties(myProductId);
    Demand(CallModule(module, "MyModuleUnload"), "the module did not leave the bridge");
    Demand(::FreeLibrary(module) != 0, "the module cannot be unloaded");
    Demand(ny_sim_live_handles(NY_SIM_ANY) == 0, "handles of the agent were left alive");
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
