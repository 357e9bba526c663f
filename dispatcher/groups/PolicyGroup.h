// Group "policy" of ny_client.dll.
#pragma once

#include "dispatcher/EntryPoint.h"

namespace bridge {

// In slot order.
inline constexpr NameTable<52> policyNames = {
    "ny_policy_uri_create",
    "ny_policy_uri_release",
    "ny_policy_uri_add_ref",
    "ny_policy_uri_copy",
    "ny_policy_uri_set_software_id",
    "ny_policy_uri_set_version",
    "ny_policy_uri_set_user",
    "ny_policy_uri_set_user_list",
    "ny_policy_uri_set_location_id",
    "ny_policy_uri_set_feature",
    "ny_policy_uri_set_category",
    "ny_policy_uri_set_type",
    "ny_policy_uri_set_name",
    "ny_policy_uri_set_pso_name",
    "ny_policy_uri_set_pso_param_int",
    "ny_policy_uri_set_pso_param_str",
    "ny_policy_uri_get_notification_type",
    "ny_policy_uri_get_software_id",
    "ny_policy_uri_get_version",
    "ny_policy_uri_get_user",
    "ny_policy_uri_get_user_session_id",
    "ny_policy_uri_get_user_logon_state",
    "ny_policy_uri_get_location_id",
    "ny_policy_uri_get_feature",
    "ny_policy_uri_get_category",
    "ny_policy_uri_get_type",
    "ny_policy_uri_get_name",
    "ny_policy_uri_get_pso_digest",
    "ny_policy_uri_get_pso_name",
    "ny_policy_uri_get_pso_param_int",
    "ny_policy_uri_get_pso_param_str",
    "ny_policy_bag_get_value",
    "ny_policy_bag_set_value",
    "ny_policy_bag_create",
    "ny_policy_bag_add_ref",
    "ny_policy_bag_release",
    "ny_policy_bag_get_iterator",
    "ny_policy_bag_get_uri_iterator",
    "ny_policy_bag_get_section_iterator",
    "ny_policy_bag_get_setting_iterator",
    "ny_policy_bag_iterator_get_next",
    "ny_policy_bag_uri_iterator_get_next",
    "ny_policy_bag_section_iterator_get_next",
    "ny_policy_bag_setting_iterator_get_next",
    "ny_policy_bag_iterator_release",
    "ny_policy_register_notification_callback",
    "ny_policy_unregister_notification_callback",
    "ny_policy_get",
    "ny_policy_set",
    "ny_policy_enforce",
    "ny_policy_refresh",
    "ny_policy_ubp_user_assignment_get",
};

namespace {

constinit Group policyGroup{"policy", "ny_client.dll", policyNames.data(), policyNames.size()};

template <auto function>
using PolicyEntryPoint = EntryPoint<function, policyNames, policyGroup>;

}  // namespace

namespace agent {

constexpr PolicyEntryPoint<&::ny_policy_uri_create> ny_policy_uri_create{};
constexpr PolicyEntryPoint<&::ny_policy_uri_release> ny_policy_uri_release{};
constexpr PolicyEntryPoint<&::ny_policy_uri_add_ref> ny_policy_uri_add_ref{};
constexpr PolicyEntryPoint<&::ny_policy_uri_set_software_id> ny_policy_uri_set_software_id{};
constexpr PolicyEntryPoint<&::ny_policy_uri_set_user> ny_policy_uri_set_user{};
constexpr PolicyEntryPoint<&::ny_policy_uri_get_feature> ny_policy_uri_get_feature{};
constexpr PolicyEntryPoint<&::ny_policy_uri_get_category> ny_policy_uri_get_category{};
constexpr PolicyEntryPoint<&::ny_policy_uri_get_type> ny_policy_uri_get_type{};
constexpr PolicyEntryPoint<&::ny_policy_uri_get_name> ny_policy_uri_get_name{};
constexpr PolicyEntryPoint<&::ny_policy_uri_get_pso_digest> ny_policy_uri_get_pso_digest{};
constexpr PolicyEntryPoint<&::ny_policy_uri_get_pso_name> ny_policy_uri_get_pso_name{};
constexpr PolicyEntryPoint<&::ny_policy_uri_get_pso_param_int> ny_policy_uri_get_pso_param_int{};
constexpr PolicyEntryPoint<&::ny_policy_uri_get_pso_param_str> ny_policy_uri_get_pso_param_str{};
constexpr PolicyEntryPoint<&::ny_policy_bag_release> ny_policy_bag_release{};
constexpr PolicyEntryPoint<&::ny_policy_bag_get_uri_iterator> ny_policy_bag_get_uri_iterator{};
constexpr PolicyEntryPoint<&::ny_policy_bag_get_section_iterator> ny_policy_bag_get_section_iterator{};
constexpr PolicyEntryPoint<&::ny_policy_bag_get_setting_iterator> ny_policy_bag_get_setting_iterator{};
constexpr PolicyEntryPoint<&::ny_policy_bag_uri_iterator_get_next> ny_policy_bag_uri_iterator_get_next{};
constexpr PolicyEntryPoint<&::ny_policy_bag_section_iterator_get_next> ny_policy_bag_section_iterator_get_next{};
constexpr PolicyEntryPoint<&::ny_policy_bag_setting_iterator_get_next> ny_policy_bag_setting_iterator_get_next{};
constexpr PolicyEntryPoint<&::ny_policy_bag_iterator_release> ny_policy_bag_iterator_release{};
constexpr PolicyEntryPoint<&::ny_policy_register_notification_callback> ny_policy_register_notification_callback{};
constexpr PolicyEntryPoint<&::ny_policy_unregister_notification_callback> ny_policy_unregister_notification_callback{};
constexpr PolicyEntryPoint<&::ny_policy_get> ny_policy_get{};
constexpr PolicyEntryPoint<&::ny_policy_enforce> ny_policy_enforce{};

}  // namespace agent

}  // namespace bridge
