// The exports of ny_setup.dll.
#include <filesystem>
#include <memory>

#include "kit/setup/LastError.h"
#include "kit/setup/Machine.h"
#include "ny_setup.h"

using kit::Guarded;
using simulator::AgentInstaller;

namespace {

void Require(bool isGiven, const char* whatIsMissing) {
    if (!isGiven) {
        throw kit::Refusal(NY_INVALID_ARGUMENT, whatIsMissing);
    }
}

template <class Step>
int32_t RunStep(ny_setup_machine_t* machine, const Step& step) {
    return Guarded([&] {
        Require(machine != nullptr, "no machine was given");
        machine->Run(step);
    });
}

int32_t RunInstallation(ny_setup_machine_t* machine, const char* version, const char* build) {
    return RunStep(machine, [&](AgentInstaller& installer) {
        Require(version != nullptr && *version != '\0', "no version was given");
        installer.Install(version, build != nullptr ? build : "full");
    });
}

}  // namespace

int32_t ny_setup_machine_create(const char* builds, ny_setup_machine_t** out) {
    return Guarded([&] {
        Require(out != nullptr, "there is no place for the machine");
        *out = std::make_unique<ny_setup_machine>(builds).release();
    });
}

int32_t ny_setup_machine_destroy(ny_setup_machine_t* machine) {
    return Guarded([&] {
        const std::unique_ptr<ny_setup_machine> owned(machine);
        if (owned != nullptr) {
            owned->Run([](AgentInstaller& installer) { installer.Remove(); });
        }
    });
}

const char* ny_setup_last_error(void) {
    return kit::LastErrorText();
}

int32_t ny_setup_install(ny_setup_machine_t* machine, const char* version, const char* build) {
    return RunInstallation(machine, version, build);
}

int32_t ny_setup_upgrade(ny_setup_machine_t* machine, const char* version, const char* build) {
    return RunInstallation(machine, version, build);
}

int32_t ny_setup_remove(ny_setup_machine_t* machine) {
    return RunStep(machine, [](AgentInstaller& installer) { installer.Remove(); });
}

const char* ny_setup_current_folder(ny_setup_machine_t* machine) {
    const char* folder = "";
    if (machine != nullptr) {
        Guarded([&] { folder = machine->CurrentFolder(); });
    }
    return folder;
}

int32_t ny_setup_write_version(ny_setup_machine_t* machine, const char* version) {
    return RunStep(machine, [&](AgentInstaller& /*installer*/) {
        Require(version != nullptr, "no version was given");
        AgentInstaller::WriteVersion(version);
    });
}

int32_t ny_setup_delete_version(ny_setup_machine_t* machine) {
    return RunStep(machine, [](AgentInstaller& /*installer*/) { AgentInstaller::DeleteVersion(); });
}

int32_t ny_setup_create_agent_key(ny_setup_machine_t* machine) {
    return RunStep(machine, [](AgentInstaller& /*installer*/) { AgentInstaller::CreateAgentKey(); });
}

int32_t ny_setup_delete_agent_key(ny_setup_machine_t* machine) {
    return RunStep(machine, [](AgentInstaller& /*installer*/) { AgentInstaller::DeleteAgentKey(); });
}

int32_t ny_setup_touch_agent_key(ny_setup_machine_t* machine) {
    return RunStep(machine, [](AgentInstaller& /*installer*/) { AgentInstaller::TouchAgentKey(); });
}

int32_t ny_setup_write_runtime_path(ny_setup_machine_t* machine, const char* folder) {
    return RunStep(machine, [&](AgentInstaller& /*installer*/) {
        Require(folder != nullptr, "no folder was given");
        AgentInstaller::WriteRuntimePath(reinterpret_cast<const char8_t*>(folder));
    });
}

int32_t ny_setup_delete_runtime_path(ny_setup_machine_t* machine) {
    return RunStep(machine, [](AgentInstaller& /*installer*/) { AgentInstaller::DeleteRuntimePath(); });
}
