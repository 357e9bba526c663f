#include "Text.h"

#include <algorithm>
#include <clocale>
#include <cwchar>

#include "Call.h"
#include "win32/text.h"

namespace win32 {

namespace {

constexpr wchar_t replacement = 0xFFFD;

constexpr wchar_t lastCharacter = 0x10FFFF;
constexpr unsigned char lastFirstByte = 0xF4;

// The calling thread converts UTF-8 for as long as the object lives.
class Utf8 {
public:
    Utf8() {
        static const locale_t utf8 = ::newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
        Support(utf8 != nullptr, "UTF-8 without the locale C.UTF-8");
        before = ::uselocale(utf8);
    }
    ~Utf8() { ::uselocale(before); }
    Utf8(const Utf8&) = delete;
    Utf8& operator=(const Utf8&) = delete;

private:
    locale_t before;
};

// How many bytes of malformed text count as one character: those that a character could begin with, at least one.
size_t MalformedSize(std::string_view text) {
    constexpr size_t longestBeginning = 3;
    size_t size =
        static_cast<unsigned char>(text.front()) <= lastFirstByte ? std::min(text.size(), longestBeginning) : 1;
    for (; size > 1; --size) {
        std::mbstate_t state{};
        if (std::mbrtowc(nullptr, text.data(), size, &state) == static_cast<size_t>(-2)) {
            break;
        }
    }
    return size;
}

// Copies the text into the buffer, or only counts when there is none.
template <class Character>
int Give(const std::basic_string<Character>& text, Character* buffer, int size) {
    const int length = static_cast<int>(text.size());
    if (size == 0) {
        return length;
    }
    if (size < length) {
        throw Failure{ERROR_INSUFFICIENT_BUFFER};
    }
    std::copy(text.begin(), text.end(), buffer);
    return length;
}

// The text given by pointer and size; a negative size stands for all of it and its zero.
template <class Character>
std::basic_string_view<Character> Given(UINT codePage, const Character* text, int size) {
    Support(codePage == CP_UTF8, "code pages but UTF-8");
    if (text == nullptr || size == 0) {
        throw Failure{ERROR_INVALID_PARAMETER};
    }
    return {text, size < 0 ? std::char_traits<Character>::length(text) + 1 : static_cast<size_t>(size)};
}

}  // namespace

std::wstring Widen(std::string_view text) {
    const Utf8 utf8;
    std::wstring wide;
    while (!text.empty()) {
        wchar_t character = 0;
        std::mbstate_t state{};
        const size_t used = std::mbrtowc(&character, text.data(), text.size(), &state);
        const bool isMalformed = used > text.size() || character > lastCharacter;
        wide += isMalformed ? replacement : character;
        // A zero is one byte that counts as none.
        text.remove_prefix(isMalformed ? MalformedSize(text) : std::max<size_t>(used, 1));
    }
    return wide;
}

std::string Narrow(std::wstring_view wide) {
    const Utf8 utf8;
    std::string text;
    for (const wchar_t character : wide) {
        char bytes[16] = {};
        std::mbstate_t state{};
        size_t size = std::wcrtomb(bytes, character, &state);
        if (size > sizeof bytes) {
            state = {};
            size = std::wcrtomb(bytes, replacement, &state);
        }
        text.append(bytes, size);
    }
    return text;
}

}  // namespace win32

int MultiByteToWideChar(UINT codePage, DWORD flags, LPCSTR text, int size, LPWSTR wide, int wideSize) {
    win32::Support(flags == 0, "flags of conversions");
    return win32::AnswerOr(0, "MultiByteToWideChar", [&] {
        return win32::Give(win32::Widen(win32::Given(codePage, text, size)), wide, wideSize);
    });
}

int WideCharToMultiByte(UINT codePage, DWORD flags, LPCWSTR wide, int size, LPSTR text, int textSize,
                        LPCSTR /*defaultText*/, BOOL* /*usedDefault*/) {
    win32::Support(flags == 0, "flags of conversions");
    return win32::AnswerOr(0, "WideCharToMultiByte", [&] {
        return win32::Give(win32::Narrow(win32::Given(codePage, wide, size)), text, textSize);
    });
}
