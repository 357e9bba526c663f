#pragma once

#include <mutex>
#include <string>

#include "AgentInstaller.h"
#include "RegistryRedirect.h"

// A machine of the process's own, see ny_setup.h.
struct ny_setup_machine {
    // Null: the builds beside the program. Throws kit::Refusal and what the registry throws.
    explicit ny_setup_machine(const char* builds);
    ny_setup_machine(const ny_setup_machine&) = delete;
    ny_setup_machine& operator=(const ny_setup_machine&) = delete;

    // Runs `step(installer)` while no other thread is at it.
    template <class Step>
    void Run(const Step& step) {
        const std::lock_guard guard(mutex);
        step(installer);
    }

    // As ny_setup_current_folder.
    const char* CurrentFolder();

private:
    // The process's right to have a machine.
    class Turn {
    public:
        Turn();
        ~Turn();
        Turn(const Turn&) = delete;
        Turn& operator=(const Turn&) = delete;
    };

    std::mutex mutex;
    Turn turn;
    simulator::RegistryRedirect redirect;
    simulator::AgentInstaller installer;
    std::string currentFolder;
};
