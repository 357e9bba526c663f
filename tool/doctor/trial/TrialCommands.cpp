#include "tool/doctor/trial/TrialCommands.h"

#include <windows.h>
#include <CLI/CLI.hpp>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "tool/doctor/LocalMachine.h"
#include "tool/doctor/SystemTexts.h"
#include "tool/doctor/trial/AgentTrial.h"
#include "tool/doctor/trial/ModuleTrial.h"

namespace tool::doctor {

namespace {

// The arguments that the doctor gives to the process of a trial.
struct TrialArguments {
    uint64_t report = 0;  // the number of the handle to which the process writes its lines
    std::string localMachine;
    std::string product;
    std::vector<std::string> libraries;
    std::string module;
    std::string checking;
    std::string record;
    std::string findings;
    std::string enter;
    std::string leave;
    unsigned wait = 0;
};

CLI::App& AddHiddenCommand(CLI::App& program, const char* name, TrialArguments& arguments) {
    CLI::App& command = *program.add_subcommand(name)->group("");
    command.add_option("--report", arguments.report)->required();
    command.add_option("--local-machine", arguments.localMachine);
    return command;
}

// Keeps the system from showing boxes for crashes and missing libraries, because no user would close them.
void ShowNoErrorBoxes() {
    ::SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX | SEM_NOOPENFILEERRORBOX);
}

void AddAgentTrial(CLI::App& program) {
    const auto arguments = std::make_shared<TrialArguments>();
    CLI::App& command = AddHiddenCommand(program, "doctor-agent", *arguments);
    command.add_option("--product", arguments->product);
    command.add_option("--library", arguments->libraries);
    command.callback([arguments] {
        ShowNoErrorBoxes();
        const ReportWriter writer(arguments->report);
        const LocalMachine localMachine(arguments->localMachine);
        TryAgent(arguments->product, arguments->libraries, TrialSteps(writer));
    });
}

void AddModuleTrial(CLI::App& program) {
    const auto arguments = std::make_shared<TrialArguments>();
    CLI::App& command = AddHiddenCommand(program, "doctor-module", *arguments);
    command.add_option("--module", arguments->module);
    command.add_option("--checking", arguments->checking);
    command.add_option("--record", arguments->record);
    command.add_option("--findings", arguments->findings);
    command.add_option("--enter", arguments->enter);
    command.add_option("--leave", arguments->leave);
    command.add_option("--wait", arguments->wait);
    command.callback([arguments] {
        ShowNoErrorBoxes();
        const ReportWriter writer(arguments->report);
        const LocalMachine localMachine(arguments->localMachine);
        TryModule({PathOf(arguments->module), PathOf(arguments->checking), arguments->enter, arguments->leave,
                   std::chrono::seconds(arguments->wait), PathOf(arguments->record), PathOf(arguments->findings)},
                  TrialSteps(writer));
    });
}

}  // namespace

void AddTrialCommands(CLI::App& program) {
    AddAgentTrial(program);
    AddModuleTrial(program);
}

}  // namespace tool::doctor
