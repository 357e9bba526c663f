// ny_variant.dll: buffers.
#include "ny_agent.h"
#include "simulator/core/ny_core.h"

int32_t ny_buffer_create(ny_buffer_t** out, size_t size) {
    return ny_core_buffer_create(out, size);
}

int32_t ny_buffer_release(ny_buffer_t* buffer) {
    return ny_core_buffer_release(buffer);
}

int32_t ny_buffer_get_string(ny_buffer_t* buffer, const char** text, size_t* length) {
    return ny_core_buffer_get_string(buffer, text, length);
}

int32_t ny_buffer_get_raw(ny_buffer_t* buffer, const unsigned char** data, size_t* size) {
    return ny_core_buffer_get_raw(buffer, data, size);
}

int32_t ny_wbuffer_release(ny_wbuffer_t* buffer) {
    return ny_core_wbuffer_release(buffer);
}

int32_t ny_wbuffer_get_string(ny_wbuffer_t* buffer, const wchar_t** text, size_t* length) {
    return ny_core_wbuffer_get_string(buffer, text, length);
}
