// The agent's updater announces an update, and asks for and sets the product's information.
#include <fmt/format.h>

#include <memory>
#include <nlohmann/json.hpp>
#include <string>

#include "Chapters.h"
#include "SampleModule.h"
#include "ny_simulator.h"

namespace {

using Json = nlohmann::json;

struct Outcome {
    int32_t result = 0;
    std::string value;
};

// Has the agent's updater make the call and waits for the product's answer.
Outcome Call(const Json& call) {
    ny_sim_updater_request_t* made = nullptr;
    Demand(ny_sim_request_update(call.dump().c_str(), &made) == NY_OK, "the product has no updater callbacks");
    const std::unique_ptr<ny_sim_updater_request_t, void (*)(ny_sim_updater_request_t*)> request(
        made, &ny_sim_updater_request_release);
    Outcome outcome;
    int32_t answer = 0;
    Demand(ny_sim_updater_request_wait(request.get(), changeTime, &answer, &outcome.result) == NY_OK && answer == NY_OK,
           "the product did not answer");
    const char* text = nullptr;
    size_t length = 0;
    if (ny_sim_updater_request_value(request.get(), &text, &length) == NY_OK) {
        outcome.value.assign(text, length);
    }
    return outcome;
}

std::string Get(const char* key) {
    const Outcome outcome =
        Call({{"call", "get product info"}, {"product", sampleProductId}, {"second", "en"}, {"key", key}});
    return outcome.result == 0 ? outcome.value : "(not known)";
}

}  // namespace

void TellOfUpdates(Stage& stage) {
    Narrator& narrator = stage.narrator;
    narrator.Say("agent", "announces an update");
    const Outcome announced = Call({{"call", "update notify"},
                                    {"product", sampleProductId},
                                    {"second", "en"},
                                    {"third", "content"},
                                    {"number", 1},
                                    {"fourth", "1.1.0"}});
    Demand(announced.result == 0, "the product refused the update");
    stage.calls.Tell();
    narrator.Say("agent", fmt::format("asks for Version: {}, for Serial: {}", Get("Version"), Get("Serial")));
    const Outcome set = Call({{"call", "set product info"},
                              {"product", sampleProductId},
                              {"second", "en"},
                              {"key", "Version"},
                              {"value", "1.1.0"}});
    Demand(set.result == 0, "the product refused its information");
    const std::string version = Get("Version");
    stage.calls.Tell();
    narrator.Say("agent", fmt::format("asks for Version again: {}", version));
    Demand(version == "1.1.0", "the product did not keep what it was given");
    stage.summary.Add("updates", "one announced; the product's version asked for, set, and asked for again");
}
