// Control functions: values made for tests.
#include "Guarded.h"
#include "HandleTable.h"
#include "JsonValues.h"
#include "ny_simulator.h"

using namespace simulator;

int32_t ny_sim_variant_from_json(const char* json, ny_variant_t** out) {
    return Guarded("ny_sim_variant_from_json", [&] {
        Require(json != nullptr && out != nullptr);
        *out = Handles().Own<ny_variant_t>(ValueFromJson(json));
    });
}
