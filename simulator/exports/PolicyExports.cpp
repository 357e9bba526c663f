// ny_client.dll: policies.
#include "ny_agent.h"
#include "simulator/core/ny_core.h"

int32_t ny_policy_get(ny_client_t* client, ny_policy_uri_t* uri, ny_policy_bag_t** out) {
    return ny_core_policy_get(client, uri, out);
}

int32_t ny_policy_bag_release(ny_policy_bag_t* bag) {
    return ny_core_policy_bag_release(bag);
}

int32_t ny_policy_bag_get_uri_iterator(ny_policy_bag_t* bag, ny_policy_bag_iterator_t** out) {
    return ny_core_policy_bag_get_uri_iterator(bag, out);
}

int32_t ny_policy_bag_get_section_iterator(ny_policy_bag_t* bag, ny_policy_uri_t* uri, ny_policy_bag_iterator_t** out) {
    return ny_core_policy_bag_get_section_iterator(bag, uri, out);
}

int32_t ny_policy_bag_get_setting_iterator(ny_policy_bag_t* bag, ny_policy_uri_t* uri, const char* section,
                                           ny_policy_bag_iterator_t** out) {
    return ny_core_policy_bag_get_setting_iterator(bag, uri, section, out);
}

int32_t ny_policy_bag_uri_iterator_get_next(ny_policy_bag_iterator_t* iterator, ny_policy_uri_t** uri) {
    return ny_core_policy_bag_uri_iterator_get_next(iterator, uri);
}

int32_t ny_policy_bag_section_iterator_get_next(ny_policy_bag_iterator_t* iterator, const char** section) {
    return ny_core_policy_bag_section_iterator_get_next(iterator, section);
}

int32_t ny_policy_bag_setting_iterator_get_next(ny_policy_bag_iterator_t* iterator, const char** name,
                                                ny_variant_t** value) {
    return ny_core_policy_bag_setting_iterator_get_next(iterator, name, value);
}

int32_t ny_policy_bag_iterator_release(ny_policy_bag_iterator_t* iterator) {
    return ny_core_policy_bag_iterator_release(iterator);
}

int32_t ny_policy_register_notification_callback(ny_client_t* client, const char* productId, uint32_t mask,
                                                 ny_policy_callback_t callback, void* callbackData) {
    return ny_core_policy_register_notification_callback(client, productId, mask, callback, callbackData);
}

int32_t ny_policy_unregister_notification_callback(ny_client_t* client, const char* productId) {
    return ny_core_policy_unregister_notification_callback(client, productId);
}

int32_t ny_policy_enforce(ny_client_t* client, const char* productId) {
    return ny_core_policy_enforce(client, productId);
}
