// Variants, tables and arrays.
#include "simulator/core/frame/Simulate.h"
#include "simulator/core/handles/HandleTable.h"
#include "simulator/core/ny_core.h"
#include "simulator/core/values/TextConversion.h"
#include "simulator/core/values/Values.h"

using namespace simulator;

int32_t ny_core_variant_init(void) {
    return Simulate("ny_variant_init", [] {});
}

int32_t ny_core_variant_deinit(void) {
    return Simulate("ny_variant_deinit", [] {});
}

int32_t ny_core_variant_release(ny_variant_t* variant) {
    return Simulate("ny_variant_release", [&] { Handles().Release(variant); });
}

int32_t ny_core_variant_create_from_string(const char* text, size_t length, ny_variant_t** out) {
    return Simulate("ny_variant_create_from_string", [&] {
        Require(text != nullptr && out != nullptr);
        *out = Handles().Own<ny_variant_t>(MakeText(std::string(text, length)));
    });
}

int32_t ny_core_variant_create_from_wstring(const wchar_t* text, size_t length, ny_variant_t** out) {
    return Simulate("ny_variant_create_from_wstring", [&] {
        Require(text != nullptr && out != nullptr);
        *out = Handles().Own<ny_variant_t>(MakeText(std::wstring(text, length)));
    });
}

int32_t ny_core_variant_get_string_buffer(ny_variant_t* variant, ny_buffer_t** out) {
    return Simulate("ny_variant_get_string_buffer", [&] {
        const auto value = Handles().Get(variant);
        Require(out != nullptr);
        *out = Handles().Own<ny_buffer_t>(std::make_shared<Buffer>(Buffer{TextOf(*value).Narrow()}));
    });
}

int32_t ny_core_variant_get_wstring_buffer(ny_variant_t* variant, ny_wbuffer_t** out) {
    return Simulate("ny_variant_get_wstring_buffer", [&] {
        const auto value = Handles().Get(variant);
        Require(out != nullptr);
        *out = Handles().Own<ny_wbuffer_t>(std::make_shared<WideBuffer>(WideBuffer{TextOf(*value).Wide()}));
    });
}

int32_t ny_core_variant_get_string(ny_variant_t* variant, const char** text, size_t* length) {
    return Simulate("ny_variant_get_string", [&] {
        const auto value = Handles().Get(variant);
        Require(text != nullptr && length != nullptr);
        const std::string& narrow = TextOf(*value).Narrow();
        *text = narrow.c_str();
        *length = narrow.size();
    });
}

int32_t ny_core_variant_get_table(ny_variant_t* variant, ny_table_t** out) {
    return Simulate("ny_variant_get_table", [&] {
        const auto value = Handles().Get(variant);
        Require(out != nullptr);
        *out = Handles().Own<ny_table_t>(TableOf(*value));
    });
}

int32_t ny_core_table_release(ny_table_t* table) {
    return Simulate("ny_table_release", [&] { Handles().Release(table); });
}

int32_t ny_core_table_get_wvalue(ny_table_t* table, const wchar_t* key, ny_variant_t** out) {
    return Simulate("ny_table_get_wvalue", [&] {
        const auto entries = Handles().Get(table);
        Require(key != nullptr && out != nullptr);
        const ValuePointer value = FindInTable(*entries, Utf8FromWide(key));
        Require(value != nullptr);
        *out = Handles().Own<ny_variant_t>(value);
    });
}

int32_t ny_core_table_get_keys(ny_table_t* table, ny_array_t** out) {
    return Simulate("ny_table_get_keys", [&] {
        const auto entries = Handles().Get(table);
        Require(out != nullptr);
        *out = Handles().Own<ny_array_t>(KeysOf(*entries));
    });
}

int32_t ny_core_array_release(ny_array_t* array) {
    return Simulate("ny_array_release", [&] { Handles().Release(array); });
}

int32_t ny_core_array_size(ny_array_t* array, size_t* out) {
    return Simulate("ny_array_size", [&] {
        const auto values = Handles().Get(array);
        Require(out != nullptr);
        *out = values->elements.size();
    });
}

int32_t ny_core_array_get_element_at(ny_array_t* array, size_t index, ny_variant_t** out) {
    return Simulate("ny_array_get_element_at", [&] {
        const auto values = Handles().Get(array);
        Require(out != nullptr && index < values->elements.size());
        *out = Handles().Own<ny_variant_t>(values->elements[index]);
    });
}
