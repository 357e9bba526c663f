// Shows what the bridge does, with the sample module and the simulated agent, on whatever machine this runs.
#include <CLI/CLI.hpp>
#include <cstdlib>
#include <exception>

#include "Narrator.h"
#include "Story.h"

int main(int argc, char** argv) {
    CLI::App program(
        "Shows the bridge between a sample module and the simulated agent. Nothing of this machine is "
        "changed: the registry is redirected, the agent's files go to the folder for temporary files.");
    bool isVerbose = false;
    program.add_flag("--verbose,-v", isVerbose,
                     "Also show the log lines that the bridge writes to the module and every call that it makes to the "
                     "agent");
    CLI11_PARSE(program, argc, argv);

    Narrator narrator(isVerbose);
    try {
        Story(narrator).Tell();
        return EXIT_SUCCESS;
    } catch (const std::exception& failure) {
        narrator.Say("host", std::string("stops here: ") + failure.what());
        return EXIT_FAILURE;
    }
}
