// ny_client.dll of the bare agent: policies. A bag of any size is three numbers that are counted down: one walk at a
// time.
#include "bench/bare/BareAgent.h"
#include "bench/bare/BareHandle.h"

namespace {

BareAgent& agent = *TheBareAgent();

// Which of the three countdowns an iterator is.
struct Countdown {
    size_t left = 0;
};
Countdown uris;
Countdown sectionsLeft;
Countdown settingsLeft;

int32_t Open(Countdown& countdown, size_t count, ny_policy_bag_iterator_t** out) {
    countdown.left = count;
    *out = reinterpret_cast<ny_policy_bag_iterator_t*>(&countdown);
    return NY_OK;
}

bool Next(ny_policy_bag_iterator_t* iterator) {
    Countdown& countdown = *reinterpret_cast<Countdown*>(iterator);
    if (countdown.left == 0) {
        return false;
    }
    --countdown.left;
    return true;
}

int32_t Give(const char** out, const char* text) {
    *out = text;
    return NY_OK;
}

}  // namespace

int32_t ny_policy_uri_create(ny_policy_uri_t** out) {
    *out = AnyHandle<ny_policy_uri_t>();
    return NY_OK;
}

int32_t ny_policy_uri_add_ref(ny_policy_uri_t* /*uri*/) {
    return NY_OK;
}

int32_t ny_policy_uri_release(ny_policy_uri_t* /*uri*/) {
    return NY_OK;
}

int32_t ny_policy_uri_set_software_id(ny_policy_uri_t* /*uri*/, const char* /*id*/) {
    return NY_OK;
}

int32_t ny_policy_uri_set_user(ny_policy_uri_t* /*uri*/, const char* /*user*/) {
    return NY_OK;
}

int32_t ny_policy_uri_get_feature(ny_policy_uri_t* /*uri*/, const char** text) {
    return Give(text, "PRODUCT1000");
}

int32_t ny_policy_uri_get_category(ny_policy_uri_t* /*uri*/, const char** text) {
    return Give(text, "Category");
}

int32_t ny_policy_uri_get_type(ny_policy_uri_t* /*uri*/, const char** text) {
    return Give(text, "Type");
}

int32_t ny_policy_uri_get_name(ny_policy_uri_t* /*uri*/, const char** text) {
    return Give(text, "My Default");
}

int32_t ny_policy_uri_get_pso_name(ny_policy_uri_t* /*uri*/, const char** text) {
    return Give(text, "settings");
}

int32_t ny_policy_uri_get_pso_param_int(ny_policy_uri_t* /*uri*/, const char** text) {
    return Give(text, "0");
}

int32_t ny_policy_uri_get_pso_param_str(ny_policy_uri_t* /*uri*/, const char** text) {
    return Give(text, "");
}

int32_t ny_policy_uri_get_pso_digest(ny_policy_uri_t* /*uri*/, const char** text) {
    return Give(text, "0123456789ABCDEF0123456789ABCDEF");
}

int32_t ny_policy_get(ny_client_t* /*client*/, ny_policy_uri_t* /*uri*/, ny_policy_bag_t** out) {
    *out = AnyHandle<ny_policy_bag_t>();
    return NY_OK;
}

int32_t ny_policy_bag_release(ny_policy_bag_t* /*bag*/) {
    return NY_OK;
}

int32_t ny_policy_bag_get_uri_iterator(ny_policy_bag_t* /*bag*/, ny_policy_bag_iterator_t** out) {
    return Open(uris, agent.containers, out);
}

int32_t ny_policy_bag_get_section_iterator(ny_policy_bag_t* /*bag*/, ny_policy_uri_t* /*uri*/,
                                           ny_policy_bag_iterator_t** out) {
    return Open(sectionsLeft, agent.sections, out);
}

int32_t ny_policy_bag_get_setting_iterator(ny_policy_bag_t* /*bag*/, ny_policy_uri_t* /*uri*/, const char* /*section*/,
                                           ny_policy_bag_iterator_t** out) {
    return Open(settingsLeft, agent.settings, out);
}

int32_t ny_policy_bag_uri_iterator_get_next(ny_policy_bag_iterator_t* iterator, ny_policy_uri_t** uri) {
    *uri = AnyHandle<ny_policy_uri_t>();
    return Next(iterator) ? NY_OK : NY_ITERATOR_END;
}

int32_t ny_policy_bag_section_iterator_get_next(ny_policy_bag_iterator_t* iterator, const char** section) {
    *section = "Section";
    return Next(iterator) ? NY_OK : NY_ITERATOR_END;
}

int32_t ny_policy_bag_setting_iterator_get_next(ny_policy_bag_iterator_t* iterator, const char** name,
                                                ny_variant_t** value) {
    *name = "bScanArchives";
    *value = HandleOfLength<ny_variant_t>(agent.textLength);
    return Next(iterator) ? NY_OK : NY_ITERATOR_END;
}

int32_t ny_policy_bag_iterator_release(ny_policy_bag_iterator_t* /*iterator*/) {
    return NY_OK;
}

int32_t ny_policy_register_notification_callback(ny_client_t* /*client*/, const char* /*productId*/, uint32_t /*mask*/,
                                                 ny_policy_callback_t callback, void* callbackData) {
    agent.policies = {callback, callbackData};
    return NY_OK;
}

int32_t ny_policy_unregister_notification_callback(ny_client_t* /*client*/, const char* /*productId*/) {
    agent.policies = {};
    return NY_OK;
}

int32_t ny_policy_enforce(ny_client_t* /*client*/, const char* /*productId*/) {
    return NY_OK;
}
