// Buffers and wide buffers.
#include "simulator/core/frame/Simulate.h"
#include "simulator/core/handles/HandleTable.h"
#include "simulator/core/ny_core.h"
#include "simulator/core/values/Values.h"

using namespace simulator;

int32_t ny_core_buffer_create(ny_buffer_t** out, size_t size) {
    return Simulate("ny_buffer_create", [&] {
        Require(out != nullptr);
        *out = Handles().Own<ny_buffer_t>(std::make_shared<Buffer>(Buffer{std::string(size, '\0')}));
    });
}

int32_t ny_core_buffer_release(ny_buffer_t* buffer) {
    return Simulate("ny_buffer_release", [&] { Handles().Release(buffer); });
}

int32_t ny_core_buffer_get_string(ny_buffer_t* buffer, const char** text, size_t* length) {
    return Simulate("ny_buffer_get_string", [&] {
        const auto content = Handles().Get(buffer);
        Require(text != nullptr && length != nullptr);
        *text = content->bytes.c_str();
        *length = content->bytes.size();
    });
}

int32_t ny_core_buffer_get_raw(ny_buffer_t* buffer, const unsigned char** data, size_t* size) {
    return Simulate("ny_buffer_get_raw", [&] {
        const auto content = Handles().Get(buffer);
        Require(data != nullptr && size != nullptr);
        *data = reinterpret_cast<const unsigned char*>(content->bytes.data());
        *size = content->bytes.size();
    });
}

int32_t ny_core_wbuffer_release(ny_wbuffer_t* buffer) {
    return Simulate("ny_wbuffer_release", [&] { Handles().Release(buffer); });
}

int32_t ny_core_wbuffer_get_string(ny_wbuffer_t* buffer, const wchar_t** text, size_t* length) {
    return Simulate("ny_wbuffer_get_string", [&] {
        const auto content = Handles().Get(buffer);
        Require(text != nullptr && length != nullptr);
        *text = content->text.c_str();
        *length = content->text.size();
    });
}
