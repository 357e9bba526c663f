// ny_client.dll: policy uris.
#include "ny_agent.h"
#include "simulator/core/ny_core.h"

int32_t ny_policy_uri_create(ny_policy_uri_t** out) {
    return ny_core_policy_uri_create(out);
}

int32_t ny_policy_uri_add_ref(ny_policy_uri_t* uri) {
    return ny_core_policy_uri_add_ref(uri);
}

int32_t ny_policy_uri_release(ny_policy_uri_t* uri) {
    return ny_core_policy_uri_release(uri);
}

int32_t ny_policy_uri_set_software_id(ny_policy_uri_t* uri, const char* id) {
    return ny_core_policy_uri_set_software_id(uri, id);
}

int32_t ny_policy_uri_set_user(ny_policy_uri_t* uri, const char* user) {
    return ny_core_policy_uri_set_user(uri, user);
}

int32_t ny_policy_uri_get_feature(ny_policy_uri_t* uri, const char** text) {
    return ny_core_policy_uri_get_feature(uri, text);
}

int32_t ny_policy_uri_get_category(ny_policy_uri_t* uri, const char** text) {
    return ny_core_policy_uri_get_category(uri, text);
}

int32_t ny_policy_uri_get_type(ny_policy_uri_t* uri, const char** text) {
    return ny_core_policy_uri_get_type(uri, text);
}

int32_t ny_policy_uri_get_name(ny_policy_uri_t* uri, const char** text) {
    return ny_core_policy_uri_get_name(uri, text);
}

int32_t ny_policy_uri_get_pso_name(ny_policy_uri_t* uri, const char** text) {
    return ny_core_policy_uri_get_pso_name(uri, text);
}

int32_t ny_policy_uri_get_pso_param_int(ny_policy_uri_t* uri, const char** text) {
    return ny_core_policy_uri_get_pso_param_int(uri, text);
}

int32_t ny_policy_uri_get_pso_param_str(ny_policy_uri_t* uri, const char** text) {
    return ny_core_policy_uri_get_pso_param_str(uri, text);
}

int32_t ny_policy_uri_get_pso_digest(ny_policy_uri_t* uri, const char** text) {
    return ny_core_policy_uri_get_pso_digest(uri, text);
}
