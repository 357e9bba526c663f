#include "fuzz/FuzzInput.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <iterator>

#include "agent/ny_agent.h"

namespace {

constexpr uint8_t firstFailure = 0xE8;
constexpr int32_t failures[] = {
    NY_INVALID_ARGUMENT,
    NY_UNEXPECTED,
    NY_OUT_OF_MEMORY,
    NY_ITERATOR_END,
    NY_ITERATOR_END,
    NY_ALREADY_EXISTS,
    NY_DISPATCHER_INIT,
    NY_LIBRARY_LOAD,
    NY_LIBRARY_UNLOAD,
    NY_FUNCTION_MISSING,
    NY_FUNCTION_MISSING,
    NY_RUNTIME_PATH_MISSING,
    2,
    77,
    -1,
    INT32_MIN,
    INT32_MAX,
};

constexpr uint8_t longText = 0xFF;
constexpr size_t longTextSize = 5000;
constexpr uint8_t longestShortText = 48;

// Keeps the compiler from removing a read of a text whose result is not used.
volatile size_t touched = 0;

}  // namespace

uint8_t FuzzInput::Byte() noexcept {
    if (left == 0) {
        return 0;
    }
    --left;
    return *data++;
}

uint64_t FuzzInput::Number(unsigned bytes) noexcept {
    uint64_t number = 0;
    for (unsigned i = 0; i < bytes; ++i) {
        number = number << 8 | Byte();
    }
    return number;
}

int32_t FuzzInput::Code() noexcept {
    const uint8_t byte = Byte();
    return byte < firstFailure ? int32_t{NY_OK} : failures[(byte - firstFailure) % std::size(failures)];
}

std::string FuzzInput::Text() {
    const uint8_t size = Byte();
    if (size == longText) {
        return std::string(longTextSize, static_cast<char>(Byte()));
    }
    std::string text(std::min<size_t>(size % longestShortText, left), '\0');
    std::generate(text.begin(), text.end(), [this] { return static_cast<char>(Byte()); });
    return text;
}

std::wstring FuzzInput::WideText() {
    const bool isOfAnyUnits = Rarely();
    std::wstring wide;
    for (const char character : Text()) {
        wide.push_back(isOfAnyUnits ? static_cast<wchar_t>(Number())
                                    : static_cast<wchar_t>(static_cast<unsigned char>(character)));
    }
    return wide;
}

template <class Character>
ExactText<Character>::ExactText(FuzzInput& input, const std::basic_string<Character>& text) {
    if (input.Rarely()) {
        return;
    }
    const size_t length = std::char_traits<Character>::length(text.c_str());
    characters = new Character[length + 1];
    std::copy_n(text.c_str(), length + 1, characters);
}

template class ExactText<char>;
template class ExactText<wchar_t>;

void Touch(const char* text) noexcept {
    touched = touched + (text != nullptr ? std::strlen(text) : 0);
}

void Touch(const wchar_t* text) noexcept {
    touched = touched + (text != nullptr ? std::wcslen(text) : 0);
}

void Touch(const void* bytes, size_t size) noexcept {
    const auto* const begin = static_cast<const unsigned char*>(bytes);
    touched = touched + static_cast<size_t>(std::count(begin, begin + size, 0));
}

void Found(const char* what) noexcept {
    std::fprintf(stderr, "FOUND: %s\n", what);
    std::abort();
}
