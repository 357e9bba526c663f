// The module asks the agent about itself and uses its crypto.
#include <nlohmann/json.hpp>

#include "Chapters.h"
#include "SampleModule.h"
#include "ny_simulator.h"

void TellOfAgentServices(Stage& stage, const char* version) {
    const nlohmann::json information = {
        {"Version", version}, {"AgentMode", "1"}, {"RdxServerLastUsed", "management.example"}};
    Demand(ny_sim_set_all_information(information.dump().c_str()) == NY_OK, "the agent did not take its information");
    Demand(SampleModuleUseAgent(), "the agent's services failed");
    stage.calls.Tell();
    stage.summary.Add("services", "the agent's information, and a secret encrypted and decrypted");
}
