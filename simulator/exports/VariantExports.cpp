// ny_variant.dll: variants, tables and arrays.
#include "ny_agent.h"
#include "simulator/core/ny_core.h"

int32_t ny_variant_init(void) {
    return ny_core_variant_init();
}

int32_t ny_variant_deinit(void) {
    return ny_core_variant_deinit();
}

int32_t ny_variant_release(ny_variant_t* variant) {
    return ny_core_variant_release(variant);
}

int32_t ny_variant_create_from_string(const char* text, size_t length, ny_variant_t** out) {
    return ny_core_variant_create_from_string(text, length, out);
}

int32_t ny_variant_create_from_wstring(const wchar_t* text, size_t length, ny_variant_t** out) {
    return ny_core_variant_create_from_wstring(text, length, out);
}

int32_t ny_variant_get_string_buffer(ny_variant_t* variant, ny_buffer_t** out) {
    return ny_core_variant_get_string_buffer(variant, out);
}

int32_t ny_variant_get_wstring_buffer(ny_variant_t* variant, ny_wbuffer_t** out) {
    return ny_core_variant_get_wstring_buffer(variant, out);
}

int32_t ny_variant_get_string(ny_variant_t* variant, const char** text, size_t* length) {
    return ny_core_variant_get_string(variant, text, length);
}

int32_t ny_variant_get_table(ny_variant_t* variant, ny_table_t** out) {
    return ny_core_variant_get_table(variant, out);
}

int32_t ny_table_release(ny_table_t* table) {
    return ny_core_table_release(table);
}

int32_t ny_table_get_wvalue(ny_table_t* table, const wchar_t* key, ny_variant_t** out) {
    return ny_core_table_get_wvalue(table, key, out);
}

int32_t ny_table_get_keys(ny_table_t* table, ny_array_t** out) {
    return ny_core_table_get_keys(table, out);
}

int32_t ny_array_release(ny_array_t* array) {
    return ny_core_array_release(array);
}

int32_t ny_array_size(ny_array_t* array, size_t* out) {
    return ny_core_array_size(array, out);
}

int32_t ny_array_get_element_at(ny_array_t* array, size_t index, ny_variant_t** out) {
    return ny_core_array_get_element_at(array, index, out);
}
