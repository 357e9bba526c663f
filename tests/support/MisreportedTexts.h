#pragma once

#include <cstdint>
#include <string_view>

#include "../../simulator/core/ny_core.h"
#include "support/AgentFunctionsReplaced.h"

// While it lives, the agent says of its texts what is not so: "text|rest" has the length of "text", a text that begins
// with '!' a length that no memory holds, and "?" is given as null, with success. To be made before the agent's
// functions are resolved.
class MisreportedTexts {
public:
    MisreportedTexts() {
        functions.Replace("ny_buffer_get_string", &Give<ny_core_buffer_get_string, ny_buffer_t, char>);
        functions.Replace("ny_wbuffer_get_string", &Give<ny_core_wbuffer_get_string, ny_wbuffer_t, wchar_t>);
    }

private:
    template <class Character>
    static void Misreport(const Character*& text, size_t& length) {
        const std::basic_string_view<Character> whole(text, length);
        if (whole.starts_with(Character('!'))) {
            length = SIZE_MAX;
        } else if (whole.size() == 1 && whole[0] == Character('?')) {
            text = nullptr;
        } else if (const size_t bar = whole.find(Character('|')); bar != whole.npos) {
            length = bar;
        }
    }

    template <auto giveText, class Buffer, class Character>
    static int32_t Give(Buffer* buffer, const Character** text, size_t* length) {
        const int32_t result = giveText(buffer, text, length);
        if (result == NY_OK) {
            Misreport(*text, *length);
        }
        return result;
    }

    AgentFunctionsReplaced functions;
};
