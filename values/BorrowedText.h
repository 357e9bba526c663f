// Texts of the agent's that are read where the agent keeps them. All functions raise AgentException with the first code
// that the agent answers other than NY_OK, or with NY_FUNCTION_MISSING when the functions given are not current, after
// releasing what they hold.
#pragma once

#include <algorithm>
#include <cstddef>
#include <new>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "base/Attributes.h"
#include "values/AgentException.h"
#include "values/TextFunctions.h"

namespace bridge {

// The agent's handle through which a text is read: a variant or a buffer, released at the object's end.
template <class Handle>
class TextHandle {
public:
    explicit TextHandle(const TextFunctions& textFunctions) noexcept : functions(textFunctions) {}
    ALWAYS_INLINE ~TextHandle() {
        if (handle != nullptr) {
            functions.Release(handle);
        }
    }
    TextHandle(const TextHandle&) = delete;
    TextHandle& operator=(const TextHandle&) = delete;

    Handle* Get() const noexcept { return handle; }

    // Calls `call(place)`, which puts a handle into the place, and holds that handle. The place is a local variable and
    // not the member, so that the compiler can keep this object in registers. To be called once.
    template <class Call>
    ALWAYS_INLINE void Take(Call&& call) {
        functions.RequireCurrent();
        Handle* given = nullptr;
        const int32_t result = std::forward<Call>(call)(&given);
        handle = given;
        Check(result);
    }

private:
    const TextFunctions& functions;
    Handle* handle = nullptr;
};

// A variant made of a text, with the text's own length.
class TextVariant {
public:
    template <class Character>
    ALWAYS_INLINE TextVariant(const TextFunctions& functions, std::basic_string_view<Character> text)
        : variant(functions) {
        variant.Take([&](ny_variant_t** place) {
            return functions.Of<Character>().createVariant(text.data(), text.size(), place);
        });
    }

    ALWAYS_INLINE ~TextVariant() = default;
    TextVariant(const TextVariant&) = delete;
    TextVariant& operator=(const TextVariant&) = delete;

    ny_variant_t* Get() const noexcept { return variant.Get(); }

private:
    TextHandle<ny_variant_t> variant;
};

// One text, valid as long as the object lives. It ends where the agent's length says, also when that is before its
// terminator.
template <class Character>
class BorrowedText {
public:
    // Without a text: Get answers null.
    explicit BorrowedText(const TextFunctions& functions) noexcept : buffer(functions) {}
    // A variant's text, which may have zeros in it; never null.
    ALWAYS_INLINE BorrowedText(const TextFunctions& functions, ny_variant_t* variant) : buffer(functions) {
        Read(functions.Of<Character>(), variant);
    }
    // The text in the other kind of character, UTF-8 to UTF-16 or back, the agent's way: through a variant. Never null.
    template <class Other>
    ALWAYS_INLINE BorrowedText(const TextFunctions& functions, std::basic_string_view<Other> source)
        : buffer(functions) {
        const TextVariant variant(functions, source);
        Read(functions.Of<Character>(), variant.Get());
    }

    ALWAYS_INLINE ~BorrowedText() = default;
    BorrowedText(const BorrowedText&) = delete;
    BorrowedText& operator=(const BorrowedText&) = delete;

    // Zero-terminated: as all texts of the agent's are, or else in a copy. Raises std::bad_alloc when the agent names a
    // length that no memory holds, or when there is no memory for the copy.
    ALWAYS_INLINE const Character* Get() {
        if (text != nullptr && (length > nearLength || text[length] != Character())) [[unlikely]] {
            EndAtLength();
        }
        return text;
    }
    // The text, no longer than either of the two lengths that the agent answered; it need not be zero-terminated.
    // Raises std::bad_alloc when they name a length that no memory holds.
    std::basic_string_view<Character> View() const {
        RequireMemory();
        return {text, length};
    }

private:
    using Functions = std::remove_cvref_t<decltype(std::declval<TextFunctions>().Of<Character>())>;
    using Buffer = typename Functions::Buffer;

    // The agent's contract: the length of the first call, the text of the second.
    ALWAYS_INLINE void Read(const Functions& functions, ny_variant_t* variant) {
        buffer.Take([&](Buffer** place) { return functions.getBuffer(variant, place); });
        const Character* characters = nullptr;
        size_t first = 0;
        int32_t result = functions.getText(buffer.Get(), &characters, &first);
        size_t second = first;
        if (result == NY_OK) {
            result = functions.getText(buffer.Get(), &characters, &second);
        }
        Check(result);
        text = characters != nullptr ? characters : noText;
        length = characters != nullptr ? std::min(first, second) : 0;
    }

    void RequireMemory() const {
        if (length > std::basic_string<Character>().max_size()) {
            throw std::bad_alloc();
        }
    }

    // Copies a text that goes on behind its length, and ends the copy there. A text with a zero before its length stays
    // as it is.
    RARELY_CALLED NEVER_INLINED void EndAtLength() {
        RequireMemory();
        const bool endsBefore = std::char_traits<Character>::find(text, length, Character()) != nullptr;
        if (endsBefore || text[length] == Character()) {
            return;
        }
        copy.reserve(length + 1);
        copy.assign(text, text + length);
        copy.push_back(Character());
        text = copy.data();
    }

    static constexpr Character noText[] = {0};
    // In characters. Up to this length Get looks for the terminator where the length says, which costs next to nothing.
    // A greater length is not trusted, because there may be no memory at that distance: Get then searches the text from
    // its beginning.
    static constexpr size_t nearLength = 4096;

    TextHandle<Buffer> buffer;
    const Character* text = nullptr;
    size_t length = 0;
    std::vector<Character> copy;  // empty for a text that is read in place
};

using BorrowedNarrow = BorrowedText<char>;
using BorrowedWide = BorrowedText<wchar_t>;

}  // namespace bridge
