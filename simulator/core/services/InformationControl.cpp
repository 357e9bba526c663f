// Control functions: the agent's information.
#include "ny_simulator.h"
#include "simulator/core/frame/Guarded.h"
#include "simulator/core/services/Information.h"
#include "simulator/core/values/JsonValues.h"

using namespace simulator;

int32_t ny_sim_set_information(const char* key, const char* json) {
    return Guarded("ny_sim_set_information", [&] {
        Require(key != nullptr);
        TheInformation().Set(key, json != nullptr ? ValueFromJson(json) : nullptr);
    });
}

int32_t ny_sim_set_all_information(const char* json) {
    return Guarded("ny_sim_set_all_information", [&] {
        Require(json != nullptr);
        TheInformation().SetAll(*TableOf(*ValueFromJson(json)));
    });
}
