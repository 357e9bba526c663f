// Control functions: the agent's information.
#include "Agent.h"
#include "Guarded.h"
#include "JsonValues.h"
#include "ny_simulator.h"

using namespace simulator;

int32_t ny_sim_set_information(const char* key, const char* json) {
    return Guarded("ny_sim_set_information", [&] {
        Require(key != nullptr);
        TheAgent().information.Set(key, json != nullptr ? ValueFromJson(json) : nullptr);
    });
}

int32_t ny_sim_set_all_information(const char* json) {
    return Guarded("ny_sim_set_all_information", [&] {
        Require(json != nullptr);
        TheAgent().information.SetAll(*TableOf(*ValueFromJson(json)));
    });
}
