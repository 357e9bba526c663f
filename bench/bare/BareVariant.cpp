// ny_variant.dll of the bare agent.
#include <algorithm>
#include <iterator>

#include "bench/bare/BareAgent.h"
#include "bench/bare/BareHandle.h"

namespace {

// A text of n characters is the last n of these.
struct Texts {
    constexpr Texts() {
        std::fill(std::begin(narrow), std::end(narrow) - 1, 'x');
        std::fill(std::begin(wide), std::end(wide) - 1, L'x');
    }

    char narrow[longestBareText + 1] = {};
    wchar_t wide[longestBareText + 1] = {};
};

constexpr Texts texts;

}  // namespace

int32_t ny_buffer_create(ny_buffer_t** out, size_t size) {
    *out = HandleOfLength<ny_buffer_t>(size);
    return NY_OK;
}

int32_t ny_buffer_release(ny_buffer_t* /*buffer*/) {
    return NY_OK;
}

int32_t ny_buffer_get_string(ny_buffer_t* buffer, const char** text, size_t* length) {
    *length = LengthOf(buffer);
    *text = texts.narrow + (longestBareText - *length);
    return NY_OK;
}

int32_t ny_buffer_get_raw(ny_buffer_t* buffer, const unsigned char** data, size_t* size) {
    *size = LengthOf(buffer);
    *data = reinterpret_cast<const unsigned char*>(texts.narrow) + (longestBareText - *size);
    return NY_OK;
}

int32_t ny_wbuffer_release(ny_wbuffer_t* /*buffer*/) {
    return NY_OK;
}

int32_t ny_wbuffer_get_string(ny_wbuffer_t* buffer, const wchar_t** text, size_t* length) {
    *length = LengthOf(buffer);
    *text = texts.wide + (longestBareText - *length);
    return NY_OK;
}

int32_t ny_variant_init(void) {
    return NY_OK;
}

int32_t ny_variant_deinit(void) {
    return NY_OK;
}

int32_t ny_variant_release(ny_variant_t* /*variant*/) {
    return NY_OK;
}

int32_t ny_variant_create_from_string(const char* /*text*/, size_t length, ny_variant_t** out) {
    *out = HandleOfLength<ny_variant_t>(length);
    return NY_OK;
}

int32_t ny_variant_create_from_wstring(const wchar_t* /*text*/, size_t length, ny_variant_t** out) {
    *out = HandleOfLength<ny_variant_t>(length);
    return NY_OK;
}

int32_t ny_variant_get_string_buffer(ny_variant_t* variant, ny_buffer_t** out) {
    *out = HandleOfLength<ny_buffer_t>(LengthOf(variant));
    return NY_OK;
}

int32_t ny_variant_get_wstring_buffer(ny_variant_t* variant, ny_wbuffer_t** out) {
    *out = HandleOfLength<ny_wbuffer_t>(LengthOf(variant));
    return NY_OK;
}

int32_t ny_variant_get_string(ny_variant_t* variant, const char** text, size_t* length) {
    *length = LengthOf(variant);
    *text = texts.narrow + (longestBareText - *length);
    return NY_OK;
}

int32_t ny_variant_get_table(ny_variant_t* /*variant*/, ny_table_t** out) {
    *out = AnyHandle<ny_table_t>();
    return NY_OK;
}

int32_t ny_table_release(ny_table_t* /*table*/) {
    return NY_OK;
}

int32_t ny_table_get_wvalue(ny_table_t* /*table*/, const wchar_t* /*key*/, ny_variant_t** out) {
    *out = HandleOfLength<ny_variant_t>(TheBareAgent()->textLength);
    return NY_OK;
}

int32_t ny_table_get_keys(ny_table_t* /*table*/, ny_array_t** out) {
    *out = AnyHandle<ny_array_t>();
    return NY_OK;
}

int32_t ny_array_release(ny_array_t* /*array*/) {
    return NY_OK;
}

int32_t ny_array_size(ny_array_t* /*array*/, size_t* out) {
    *out = TheBareAgent()->settings;
    return NY_OK;
}

int32_t ny_array_get_element_at(ny_array_t* /*array*/, size_t /*index*/, ny_variant_t** out) {
    *out = HandleOfLength<ny_variant_t>(TheBareAgent()->textLength);
    return NY_OK;
}
