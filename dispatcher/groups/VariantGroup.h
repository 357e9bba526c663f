// Group "ny_variant" (variants, tables, arrays) of ny_variant.dll.
#pragma once

#include "dispatcher/EntryPoint.h"

namespace bridge {

// In slot order.
inline constexpr NameTable<66> variantNames = {
    "ny_variant_init",
    "ny_variant_deinit",
    "ny_variant_create",
    "ny_variant_get_version",
    "ny_variant_is_equal",
    "ny_variant_add_ref",
    "ny_variant_release",
    "ny_variant_get_type",
    "ny_variant_create_from_uint64",
    "ny_variant_get_uint64",
    "ny_variant_create_from_int64",
    "ny_variant_get_int64",
    "ny_variant_create_from_double",
    "ny_variant_get_double",
    "ny_variant_create_from_uint32",
    "ny_variant_get_uint32",
    "ny_variant_create_from_int32",
    "ny_variant_get_int32",
    "ny_variant_create_from_float",
    "ny_variant_get_float",
    "ny_variant_create_from_uint16",
    "ny_variant_get_uint16",
    "ny_variant_create_from_int16",
    "ny_variant_get_int16",
    "ny_variant_create_from_uint8",
    "ny_variant_get_uint8",
    "ny_variant_create_from_int8",
    "ny_variant_get_int8",
    "ny_variant_create_from_bool",
    "ny_variant_get_bool",
    "ny_variant_create_from_string",
    "ny_variant_get_string_buffer",
    "ny_variant_create_from_wstring",
    "ny_variant_get_wstring_buffer",
    "ny_variant_create_from_table",
    "ny_variant_get_table",
    "ny_variant_create_from_array",
    "ny_variant_get_array",
    "ny_variant_create_from_raw",
    "ny_variant_get_raw_buffer",
    "ny_table_create",
    "ny_table_add_ref",
    "ny_table_release",
    "ny_table_size",
    "ny_table_is_equal",
    "ny_table_add_entry",
    "ny_table_add_wentry",
    "ny_table_remove_entry",
    "ny_table_remove_wentry",
    "ny_table_foreach",
    "ny_table_wforeach",
    "ny_table_get_wvalue",
    "ny_table_get_value",
    "ny_table_get_keys",
    "ny_array_create",
    "ny_array_add_ref",
    "ny_array_release",
    "ny_array_size",
    "ny_array_is_equal",
    "ny_array_push",
    "ny_array_get_element_at",
    "ny_array_set_element_at",
    "ny_array_foreach",
    "ny_variant_is_type",
    "ny_variant_get_raw",
    "ny_variant_get_string",
};

namespace {

constinit Group variantGroup{"ny_variant", "ny_variant.dll", variantNames.data(), variantNames.size()};

template <auto function>
using VariantEntryPoint = EntryPoint<function, variantNames, variantGroup>;

}  // namespace

namespace agent {

constexpr VariantEntryPoint<&::ny_variant_init> ny_variant_init{};
constexpr VariantEntryPoint<&::ny_variant_deinit> ny_variant_deinit{};
constexpr VariantEntryPoint<&::ny_variant_release> ny_variant_release{};
constexpr VariantEntryPoint<&::ny_variant_create_from_string> ny_variant_create_from_string{};
constexpr VariantEntryPoint<&::ny_variant_get_string_buffer> ny_variant_get_string_buffer{};
constexpr VariantEntryPoint<&::ny_variant_create_from_wstring> ny_variant_create_from_wstring{};
constexpr VariantEntryPoint<&::ny_variant_get_wstring_buffer> ny_variant_get_wstring_buffer{};
constexpr VariantEntryPoint<&::ny_variant_get_table> ny_variant_get_table{};
constexpr VariantEntryPoint<&::ny_table_release> ny_table_release{};
constexpr VariantEntryPoint<&::ny_table_get_wvalue> ny_table_get_wvalue{};
constexpr VariantEntryPoint<&::ny_table_get_keys> ny_table_get_keys{};
constexpr VariantEntryPoint<&::ny_array_release> ny_array_release{};
constexpr VariantEntryPoint<&::ny_array_size> ny_array_size{};
constexpr VariantEntryPoint<&::ny_array_get_element_at> ny_array_get_element_at{};
constexpr VariantEntryPoint<&::ny_variant_get_string> ny_variant_get_string{};

}  // namespace agent

}  // namespace bridge
