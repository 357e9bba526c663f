// The agent asks a product, notifies it, and tells it of updates.
#include <memory>

#include "tool/play/player/AgentRequest.h"
#include "tool/play/player/Steps.h"

namespace tool::play {

namespace {

using vsmsgbus::testing::Failure;
using Json = nlohmann::json;

void DemandRegistered(Stage& stage, const std::string& product, int32_t code) {
    if (code != NY_OK) {
        throw Failure("the agent cannot call it: " + stage.Machine().Describe(product));
    }
}

// --- Properties

using vsmsgbus::testing::Property;
using vsmsgbus::testing::PropertyList;

void DemandProperties(const Json& wanted, const PropertyList& given) {
    for (const auto& [path, names] : wanted.items()) {
        for (const auto& [name, pattern] : names.items()) {
            DemandText(path + ": " + name, pattern, given.Value(path, name));
        }
    }
}

void LookAtProperties(Stage& stage, const Json& step, ny_sim_property_request_t* request, int32_t answer) {
    const std::vector<Property> properties = vsmsgbus::testing::detail::PropertiesOf(request);
    for (const Property& property : properties) {
        stage.Tell("module", "gives " + property.Text());
    }
    DemandAgentAnswer(stage, step, ny_sim_property_request_thread(request), answer);
    if (step.contains("count")) {
        DemandNumber("the number of properties", step, "count", 0, static_cast<int64_t>(properties.size()));
    } else if (properties.empty() && answer == NY_OK) {
        throw Failure("one property at least was to be given, and none is");
    }
    DemandProperties(step.value("properties", Json::object()), PropertyList(properties));
}

void Ask(Stage& stage, const Json& step) {
    const std::string product = stage.ProductOf(step);
    ny_sim_property_request_t* request = nullptr;
    stage.Tell("agent", "asks " + product + " for its properties");
    DemandRegistered(stage, product, ny_sim_request_properties(product.c_str(), &request));
    stage.Finish(step, std::make_unique<PropertyRequest>(request, &LookAtProperties));
}

// --- Policies

void Notify(Stage& stage, const Json& step) {
    const std::string product = stage.ProductOf(step);
    ny_sim_policy_request_t* request = nullptr;
    stage.Tell("agent", "notifies " + product + " of its policies");
    DemandRegistered(stage, product, ny_sim_notify_policy(product.c_str(), &request));
    stage.Finish(step, std::make_unique<PolicyRequest>(
                           request, [](Stage& on, const Json& of, ny_sim_policy_request_t* notified, int32_t answer) {
                               DemandAgentAnswer(on, of, ny_sim_policy_request_thread(notified), answer);
                           }));
}

// --- Updates and values

void LookAtUpdate(Stage& stage, const Json& step, ny_sim_updater_request_t* request, int32_t answer, int32_t result) {
    const char* text = nullptr;
    size_t length = 0;
    const bool hasValue = ny_sim_updater_request_value(request, &text, &length) == NY_OK;
    const std::string value = hasValue ? std::string(text, length) : std::string();
    stage.Tell("module", result == NY_SIM_UNWRITTEN ? "has written no result"
                                                    : "has the result " + std::to_string(result) +
                                                          (hasValue ? ", value \"" + value + '"' : ""));
    DemandAgentAnswer(stage, step, ny_sim_updater_request_thread(request), answer);
    const Json wanted = step.value("result", Json(0));
    if (!wanted.is_null() && result == NY_SIM_UNWRITTEN) {
        throw Failure("the result was to be " + wanted.dump() + ", and none was written");
    }
    DemandNumber("the result", step, "result", 0, result);
    if (step.at("do") == "get value" && step.contains("value")) {
        if (!hasValue) {
            throw Failure("the value was to be " + Shown(step.at("value")) + ", and none was given");
        }
        DemandText("the value", step.at("value"), value);
    }
}

void CallUpdater(Stage& stage, const Json& step, const std::string& what, Json call) {
    const std::string product = stage.ProductOf(step);
    call["product"] = product;
    ny_sim_updater_request_t* request = nullptr;
    stage.Tell("agent", what + " of " + product);
    DemandRegistered(stage, product, ny_sim_request_update(call.dump().c_str(), &request));
    stage.Finish(step, std::make_unique<UpdaterRequest>(request, &LookAtUpdate));
}

void Update(Stage& stage, const Json& step) {
    CallUpdater(stage, step, "tells of an update",
                {{"call", "update notify"},
                 {"second", step.value("second", "")},
                 {"third", step.value("third", "")},
                 {"fourth", step.value("fourth", "")},
                 {"number", step.value("number", 0U)}});
}

void GetValue(Stage& stage, const Json& step) {
    const std::string name = step.at("name");
    CallUpdater(stage, step, "asks for " + name,
                {{"call", "get product info"}, {"second", step.value("second", "")}, {"key", name}});
}

void SetValue(Stage& stage, const Json& step) {
    const std::string name = step.at("name");
    CallUpdater(stage, step, "sets " + name,
                {{"call", "set product info"},
                 {"second", step.value("second", "")},
                 {"key", name},
                 {"value", step.at("value")}});
}

void Await(Stage& stage, const Json& step) {
    stage.Await(step.at("request"), LimitOf(step));
}

}  // namespace

StepTable RequestSteps() {
    return {
        {"ask", &Ask},    {"notify", &Notify}, {"update", &Update}, {"get value", &GetValue}, {"set value", &SetValue},
        {"await", &Await}};
}

}  // namespace tool::play
