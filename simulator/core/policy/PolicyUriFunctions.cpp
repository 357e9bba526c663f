// Policy uris.
#include "simulator/core/frame/Simulate.h"
#include "simulator/core/handles/HandleTable.h"
#include "simulator/core/ny_core.h"
#include "simulator/core/policy/PolicyUri.h"

using namespace simulator;

namespace {

int32_t GetText(FunctionName function, ny_policy_uri_t* uri, PolicyText Policy::*which, const char** text) noexcept {
    return Simulate(function, [&] {
        const auto target = Handles().Get(uri);
        Require(text != nullptr);
        *text = target->Text(which);
    });
}

}  // namespace

int32_t ny_core_policy_uri_create(ny_policy_uri_t** out) {
    return Simulate("ny_policy_uri_create", [&] {
        Require(out != nullptr);
        *out = Handles().Own<ny_policy_uri_t>(std::make_shared<PolicyUri>());
    });
}

int32_t ny_core_policy_uri_add_ref(ny_policy_uri_t* uri) {
    return Simulate("ny_policy_uri_add_ref", [&] { Handles().Own<ny_policy_uri_t>(Handles().Get(uri)); });
}

int32_t ny_core_policy_uri_release(ny_policy_uri_t* uri) {
    return Simulate("ny_policy_uri_release", [&] { Handles().Release(uri); });
}

int32_t ny_core_policy_uri_set_software_id(ny_policy_uri_t* uri, const char* id) {
    return Simulate("ny_policy_uri_set_software_id", [&] { Handles().Get(uri)->SetSoftwareId(id); });
}

int32_t ny_core_policy_uri_set_user(ny_policy_uri_t* uri, const char* user) {
    return Simulate("ny_policy_uri_set_user", [&] { Handles().Get(uri)->SetUser(user); });
}

int32_t ny_core_policy_uri_get_feature(ny_policy_uri_t* uri, const char** text) {
    return GetText("ny_policy_uri_get_feature", uri, &Policy::feature, text);
}

int32_t ny_core_policy_uri_get_category(ny_policy_uri_t* uri, const char** text) {
    return GetText("ny_policy_uri_get_category", uri, &Policy::category, text);
}

int32_t ny_core_policy_uri_get_type(ny_policy_uri_t* uri, const char** text) {
    return GetText("ny_policy_uri_get_type", uri, &Policy::type, text);
}

int32_t ny_core_policy_uri_get_name(ny_policy_uri_t* uri, const char** text) {
    return GetText("ny_policy_uri_get_name", uri, &Policy::name, text);
}

int32_t ny_core_policy_uri_get_pso_name(ny_policy_uri_t* uri, const char** text) {
    return GetText("ny_policy_uri_get_pso_name", uri, &Policy::settingsObjectName, text);
}

int32_t ny_core_policy_uri_get_pso_param_int(ny_policy_uri_t* uri, const char** text) {
    return GetText("ny_policy_uri_get_pso_param_int", uri, &Policy::intParameter, text);
}

int32_t ny_core_policy_uri_get_pso_param_str(ny_policy_uri_t* uri, const char** text) {
    return GetText("ny_policy_uri_get_pso_param_str", uri, &Policy::stringParameter, text);
}

int32_t ny_core_policy_uri_get_pso_digest(ny_policy_uri_t* uri, const char** text) {
    return GetText("ny_policy_uri_get_pso_digest", uri, &Policy::digest, text);
}
