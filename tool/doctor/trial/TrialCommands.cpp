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

// What the parent says on the command line.
struct TrialWords {
    uint64_t report = 0;
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

CLI::App& AddHidden(CLI::App& program, const char* name, TrialWords& words) {
    CLI::App& command = *program.add_subcommand(name)->group("");
    command.add_option("--report", words.report)->required();
    command.add_option("--local-machine", words.localMachine);
    return command;
}

// Nobody is there to press a button when something crashes or is missing.
void ShowNoErrorBoxes() {
    ::SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX | SEM_NOOPENFILEERRORBOX);
}

void AddAgentTrial(CLI::App& program) {
    const auto words = std::make_shared<TrialWords>();
    CLI::App& command = AddHidden(program, "doctor-agent", *words);
    command.add_option("--product", words->product);
    command.add_option("--library", words->libraries);
    command.callback([words] {
        ShowNoErrorBoxes();
        const ReportWriter writer(words->report);
        const LocalMachine localMachine(words->localMachine);
        TryAgent(words->product, words->libraries, TrialSteps(writer));
    });
}

void AddModuleTrial(CLI::App& program) {
    const auto words = std::make_shared<TrialWords>();
    CLI::App& command = AddHidden(program, "doctor-module", *words);
    command.add_option("--module", words->module);
    command.add_option("--checking", words->checking);
    command.add_option("--record", words->record);
    command.add_option("--findings", words->findings);
    command.add_option("--enter", words->enter);
    command.add_option("--leave", words->leave);
    command.add_option("--wait", words->wait);
    command.callback([words] {
        ShowNoErrorBoxes();
        const ReportWriter writer(words->report);
        const LocalMachine localMachine(words->localMachine);
        TryModule({PathOf(words->module), PathOf(words->checking), words->enter, words->leave,
                   std::chrono::seconds(words->wait), PathOf(words->record), PathOf(words->findings)},
                  TrialSteps(writer));
    });
}

}  // namespace

void AddTrialCommands(CLI::App& program) {
    AddAgentTrial(program);
    AddModuleTrial(program);
}

}  // namespace tool::doctor
