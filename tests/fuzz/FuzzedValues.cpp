// The fuzzed agent's buffers, variants, tables and arrays.
#include <algorithm>

#include "fuzz/FuzzedAgent.h"

namespace {

constexpr size_t largestBuffer = 0x10000;

std::vector<unsigned char> Bytes(FuzzInput& input) {
    const std::string text = input.Text();
    return {text.c_str(), text.c_str() + text.size() + 1};
}

std::unique_ptr<ny_variant> NarrowVariant(const std::string& text) {
    auto variant = std::make_unique<ny_variant>();
    variant->narrow.assign(text.c_str(), text.c_str() + text.size() + 1);
    return variant;
}

}  // namespace

int32_t ny_buffer_create(ny_buffer_t** out, size_t size) {
    return Answer([=](FuzzedAgent& agent) {
        if (size > largestBuffer) {
            throw Refusal{NY_OUT_OF_MEMORY};
        }
        auto buffer = std::make_unique<ny_buffer>();
        buffer->bytes.resize(size + 1);
        Give(agent, std::move(buffer), out);
    });
}

int32_t ny_buffer_release(ny_buffer_t* buffer) {
    return LetGo(buffer);
}

int32_t ny_buffer_get_string(ny_buffer_t* buffer, const char** text, size_t* length) {
    return Answer([=](FuzzedAgent& agent) {
        agent.handles.Require(buffer);
        GiveText(agent.input, reinterpret_cast<const char*>(buffer->bytes.data()), buffer->bytes.size() - 1, text,
                 length);
    });
}

int32_t ny_buffer_get_raw(ny_buffer_t* buffer, const unsigned char** data, size_t* size) {
    return Answer([=](FuzzedAgent& agent) {
        agent.handles.Require(buffer);
        GiveText(agent.input, buffer->bytes.data(), buffer->bytes.size() - 1, data, size, false);
    });
}

int32_t ny_wbuffer_release(ny_wbuffer_t* buffer) {
    return LetGo(buffer);
}

int32_t ny_wbuffer_get_string(ny_wbuffer_t* buffer, const wchar_t** text, size_t* length) {
    return Answer([=](FuzzedAgent& agent) {
        agent.handles.Require(buffer);
        GiveText(agent.input, static_cast<const wchar_t*>(buffer->units.data()), buffer->units.size() - 1, text,
                 length);
    });
}

int32_t ny_variant_release(ny_variant_t* variant) {
    return LetGo(variant);
}

int32_t ny_variant_create_from_string(const char* text, size_t length, ny_variant_t** out) {
    return Answer([=](FuzzedAgent& agent) { Give(agent, NarrowVariant(std::string(text, length)), out); });
}

int32_t ny_variant_create_from_wstring(const wchar_t* text, size_t length, ny_variant_t** out) {
    return Answer([=](FuzzedAgent& agent) {
        auto variant = std::make_unique<ny_variant>();
        variant->kind = ny_variant::Kind::Wide;
        variant->wide.assign(text, length);
        Give(agent, std::move(variant), out);
    });
}

// Converting may make any text of a text.
int32_t ny_variant_get_string_buffer(ny_variant_t* variant, ny_buffer_t** out) {
    return Answer([=](FuzzedAgent& agent) {
        agent.handles.Require(variant);
        auto buffer = std::make_unique<ny_buffer>();
        if (agent.input.Rarely()) {
            buffer->bytes = Bytes(agent.input);
        } else if (variant->kind == ny_variant::Kind::Wide) {
            buffer->bytes.assign(variant->wide.c_str(), variant->wide.c_str() + variant->wide.size() + 1);
        } else {
            buffer->bytes.assign(variant->narrow.begin(), variant->narrow.end());
        }
        Give(agent, std::move(buffer), out);
    });
}

int32_t ny_variant_get_wstring_buffer(ny_variant_t* variant, ny_wbuffer_t** out) {
    return Answer([=](FuzzedAgent& agent) {
        agent.handles.Require(variant);
        auto buffer = std::make_unique<ny_wbuffer>();
        if (variant->kind == ny_variant::Kind::Wide || agent.input.Rarely()) {
            const std::wstring wide = variant->wide.empty() ? agent.input.WideText() : variant->wide;
            buffer->units.assign(wide.c_str(), wide.c_str() + wide.size() + 1);
        } else {
            std::transform(variant->narrow.begin(), variant->narrow.end(), std::back_inserter(buffer->units),
                           [](char character) { return static_cast<unsigned char>(character); });
        }
        Give(agent, std::move(buffer), out);
    });
}

int32_t ny_variant_get_string(ny_variant_t* variant, const char** text, size_t* length) {
    return Answer([=](FuzzedAgent& agent) {
        agent.handles.Require(variant);
        GiveText(agent.input, static_cast<const char*>(variant->narrow.data()), variant->narrow.size() - 1, text,
                 length);
    });
}

int32_t ny_variant_get_table(ny_variant_t* variant, ny_table_t** out) {
    return Answer([=](FuzzedAgent& agent) {
        agent.handles.Require(variant);
        auto table = std::make_unique<ny_table>();
        for (unsigned count = agent.input.Below(6); count != 0; --count) {
            table->keys.push_back(agent.input.Text());
        }
        Give(agent, std::move(table), out);
    });
}

int32_t ny_table_release(ny_table_t* table) {
    return LetGo(table);
}

int32_t ny_table_get_wvalue(ny_table_t* table, const wchar_t* key, ny_variant_t** out) {
    return Answer([=](FuzzedAgent& agent) {
        agent.handles.Require(table);
        Touch(key);
        Give(agent, agent.MakeVariant(), out);
    });
}

int32_t ny_table_get_keys(ny_table_t* table, ny_array_t** out) {
    return Answer([=](FuzzedAgent& agent) {
        agent.handles.Require(table);
        auto keys = std::make_unique<ny_array>();
        keys->elements = table->keys;
        Give(agent, std::move(keys), out);
    });
}

int32_t ny_array_release(ny_array_t* array) {
    return LetGo(array);
}

// More than there are, now and then.
int32_t ny_array_size(ny_array_t* array, size_t* out) {
    return Answer([=](FuzzedAgent& agent) {
        agent.handles.Require(array);
        *out = agent.input.Rarely() ? SIZE_MAX : array->elements.size();
    });
}

int32_t ny_array_get_element_at(ny_array_t* array, size_t index, ny_variant_t** out) {
    return Answer([=](FuzzedAgent& agent) {
        agent.handles.Require(array);
        if (index >= array->elements.size()) {
            throw Refusal{NY_INVALID_ARGUMENT};
        }
        Give(agent, NarrowVariant(array->elements[index]), out);
    });
}
