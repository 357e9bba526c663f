#include "tool/doctor/Doctor.h"

#include <CLI/CLI.hpp>
#include <filesystem>
#include <memory>

#include "tool/doctor/Diagnosis.h"
#include "tool/doctor/JsonReport.h"
#include "tool/doctor/LocalMachine.h"
#include "tool/doctor/Options.h"
#include "tool/doctor/SystemTexts.h"
#include "tool/doctor/TextReport.h"
#include "tool/doctor/checks/AgentKeyChecks.h"
#include "tool/doctor/checks/AgentTrialChecks.h"
#include "tool/doctor/checks/BridgeChecks.h"
#include "tool/doctor/checks/LibraryChecks.h"
#include "tool/doctor/checks/ModuleTrialChecks.h"
#include "tool/doctor/checks/PolicyNamesCheck.h"
#include "tool/doctor/checks/RuntimePathChecks.h"
#include "tool/doctor/trial/TrialCommands.h"

namespace tool {

namespace {

using namespace doctor;
namespace fs = std::filesystem;

constexpr char footer[] = R"(Examples:
  vsmsgbus doctor
      looks at the machine: registry, runtime path, the agent's libraries, the agent itself
  vsmsgbus doctor --module C:\Product\MyModule.dll
      the same, and whether that module loads, enters and registers what its mask names
  vsmsgbus doctor --module MyModule.dll --enter StartModule --product MYAV__1000
      the module enters in StartModule, and is looked for as MYAV__1000
  vsmsgbus doctor --json > report.json
      everything, for machines

It changes nothing on the machine. The agent and the module run in processes of their own, as this user.
Exit status: 0 nothing is found, 1 a finding, 2 wrong use.)";

// The bridge that the module would load: beside it, else beside this program.
fs::path BridgeFolder(const Options& options) {
    if (!options.module.empty()) {
        const fs::path folder = PathOf(options.module).parent_path();
        if (std::error_code error; fs::is_regular_file(folder / "VsMsgbus.dll", error)) {
            return folder;
        }
    }
    return OwnFolder();
}

Checks ExamineMachine(const Options& options) {
    const LocalMachine localMachine(options.localMachine);
    Checks checks = CheckBridge(BridgeFolder(options));
    Append(checks, CheckAgentKey());
    checks.push_back(CheckPolicyNames());
    RuntimePathResult path = CheckRuntimePath();
    Append(checks, std::move(path.checks));
    LibraryResult libraries = CheckLibraries(path.folder);
    Append(checks, std::move(libraries.checks));
    Append(checks, CheckAgentTrial(libraries.usable, options));
    return checks;
}

Checks Examine(Options options) {
    if (!options.module.empty()) {
        options.module = Utf8(fs::absolute(PathOf(options.module)));
    }
    Checks checks = ExamineMachine(options);
    if (!options.module.empty()) {
        ModuleFileResult file = CheckModuleFile(PathOf(options.module), BridgeFolder(options));
        Append(checks, std::move(file.checks));
        Append(checks, CheckModuleTrial(file, options));
    }
    return checks;
}

void AddOptions(CLI::App& command, Options& options) {
    command.add_option("--product", options.product,
                       "The product id that is registered with the agent and withdrawn, and as which the module has to "
                       "enter; an id of its own that no agent knows otherwise");
    auto* const module = command.add_option("--module", options.module, "A module's file, which is tried as well");
    command
        .add_option("--enter", options.enter,
                    "The function by which the host has the module enter: all arguments are null, and it answers "
                    "whether it went well. Otherwise the only export whose name ends in \"Load\"")
        ->needs(module);
    command
        .add_option("--leave", options.leave,
                    "The same for leaving. Otherwise the only export whose name ends in \"Unload\"")
        ->needs(module);
    command
        .add_option("--wait", options.waitSeconds,
                    "For how many seconds a step of the agent's, and the module's VsMsgbusEntry, is waited for")
        ->check(CLI::Range(1, 3600))
        ->capture_default_str();
    command.add_flag("--json", options.asJson, "Prints everything as JSON");
    command.add_option("--local-machine", options.localMachine,
                       "A key below HKEY_CURRENT_USER that is looked at in the place of HKEY_LOCAL_MACHINE: for tests "
                       "of installers, and for what was exported from another machine");
    command.footer(footer);
}

}  // namespace

void AddDoctor(CLI::App& program, ExitStatus& status) {
    const auto options = std::make_shared<Options>();
    CLI::App* const command =
        program.add_subcommand("doctor", "Says why a module is not asked, or why the bridge does not start");
    AddOptions(*command, *options);
    command->callback([options, &status] {
        const Checks checks = Examine(*options);
        (options->asJson ? PrintJson : PrintText)(checks);
        status = StatusOf(checks);
    });
    AddTrialCommands(program);
}

}  // namespace tool
