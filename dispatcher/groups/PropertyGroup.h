// Group "property" of ny_client.dll.
#pragma once

#include "dispatcher/EntryPoint.h"

namespace bridge {

// In slot order.
inline constexpr NameTable<5> propertyNames = {
    "ny_property_register_provider_callback",
    "ny_property_unregister_provider_callback",
    "ny_property_send",
    "ny_property_bag_get_type",
    "ny_property_bag_add_property",
};

namespace {

constinit Group propertyGroup{"property", "ny_client.dll", propertyNames.data(), propertyNames.size()};

template <auto function>
using PropertyEntryPoint = EntryPoint<function, propertyNames, propertyGroup>;

}  // namespace

namespace agent {

constexpr PropertyEntryPoint<&::ny_property_register_provider_callback> ny_property_register_provider_callback{};
constexpr PropertyEntryPoint<&::ny_property_unregister_provider_callback> ny_property_unregister_provider_callback{};
constexpr PropertyEntryPoint<&::ny_property_bag_add_property> ny_property_bag_add_property{};

}  // namespace agent

}  // namespace bridge
