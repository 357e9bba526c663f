// A program of Microsoft's C++ ABI, without a library of its own, that makes a machine, and installs, upgrades and
// removes the agent on it. It ends with 0, or with the number of the step that went wrong.
#include <ny_setup.h>
#include <ny_simulator.h>

namespace {

bool IsSame(const char* a, const char* b) {
    while (*a != '\0' && *a == *b) {
        ++a;
        ++b;
    }
    return *a == *b;
}

}  // namespace

extern "C" int Begin() {
    ny_setup_machine_t* machine = nullptr;
    ny_setup_machine_t* second = nullptr;
    const bool steps[] = {
        ny_setup_machine_create(nullptr, &machine) == NY_OK,
        ny_setup_machine_create(nullptr, &second) == NY_SETUP_MACHINE_EXISTS,
        IsSame(ny_setup_last_error(), "this process has a machine: destroy it first"),
        ny_setup_install(machine, "5.6.0", "older") == NY_OK,
        ny_setup_upgrade(machine, "5.7.0", nullptr) == NY_OK,
        !IsSame(ny_setup_current_folder(machine), ""),
        ny_setup_remove(machine) == NY_OK,
        IsSame(ny_setup_current_folder(machine), ""),
        ny_sim_started_clients() == 0,
        ny_setup_machine_destroy(machine) == NY_OK,
    };
    int number = 0;
    for (const bool isRight : steps) {
        ++number;
        if (!isRight) {
            return number;
        }
    }
    return 0;
}
