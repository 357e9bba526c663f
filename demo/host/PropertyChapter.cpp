// The agent asks for properties.
#include <fmt/format.h>

#include "Chapters.h"
#include "SampleModule.h"
#include "ny_simulator.h"

void TellOfProperties(Stage& stage, const char* version) {
    Narrator& narrator = stage.narrator;
    ny_sim_property_request_t* request = nullptr;
    Demand(ny_sim_request_properties(sampleProductId, &request) == NY_OK, "the product is not registered");
    narrator.Say("agent", fmt::format("asks {} for its properties, on a thread of its own, {}", sampleProductId,
                                      ny_sim_property_request_thread(request)));
    int32_t answer = 0;
    Demand(ny_sim_property_request_wait(request, changeTime, &answer) == NY_OK, "the product did not answer");
    const size_t size = ny_sim_property_request_size(request);
    stage.calls.Tell();
    narrator.Say("agent",
                 fmt::format("has the answer ({}): {} properties", answer == NY_OK ? "success" : "failure", size));
    for (size_t index = 0; index < size; ++index) {
        const char* path = nullptr;
        const char* name = nullptr;
        const char* value = nullptr;
        Demand(ny_sim_property_request_get(request, index, &path, &name, &value) == NY_OK, "a property is missing");
        narrator.Continue(fmt::format("{:<8}  {:<10}  {}", path, name, value));
    }
    ny_sim_property_request_release(request);
    Demand(answer == NY_OK && size != 0, "the product gave no properties");
    stage.summary.Add("properties", fmt::format("{} facts about this machine, for version {}", size, version));
}
