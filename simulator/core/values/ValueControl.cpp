// Control functions: values made for tests.
#include "ny_simulator.h"
#include "simulator/core/frame/Guarded.h"
#include "simulator/core/handles/HandleTable.h"
#include "simulator/core/values/JsonValues.h"

using namespace simulator;

int32_t ny_sim_variant_from_json(const char* json, ny_variant_t** out) {
    return Guarded("ny_sim_variant_from_json", [&] {
        Require(json != nullptr && out != nullptr);
        *out = Handles().Own<ny_variant_t>(ValueFromJson(json));
    });
}
