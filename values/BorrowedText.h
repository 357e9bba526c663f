// Texts of the agent's that are read where the agent keeps them. All raise corvane::ny::utils::exception with the first
// code that the agent answers other than NY_OK, or with NY_FUNCTION_MISSING when the functions given are not current,
// after releasing what they hold.
#pragma once

#include <algorithm>
#include <cstddef>
#include <new>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "values/AgentException.h"
#include "values/AgentHandle.h"
#include "values/TextFunctions.h"

// A variant made of a text, with the text's own length.
class TextVariant {
public:
    template <class Character>
    [[gnu::always_inline]] TextVariant(const TextFunctions& textFunctions, std::basic_string_view<Character> text)
        : TextVariant(textFunctions) {
        ny_variant_t* given = nullptr;
        const int32_t result = functions.Of<Character>().createVariant(text.data(), text.size(), &given);
        variant = given;
        corvane::ny::utils::Check(result);
    }
    [[gnu::always_inline]] ~TextVariant() {
        if (variant != nullptr) {
            functions.AreCurrent() ? functions.releaseVariant(variant) : ReleaseHandle(variant);
        }
    }
    TextVariant(const TextVariant&) = delete;
    TextVariant& operator=(const TextVariant&) = delete;

    ny_variant_t* Get() const noexcept { return variant; }

private:
    explicit TextVariant(const TextFunctions& textFunctions) : functions(textFunctions) {
        if (!functions.AreCurrent()) {
            throw corvane::ny::utils::exception(NY_FUNCTION_MISSING);
        }
    }

    const TextFunctions& functions;
    ny_variant_t* variant = nullptr;
};

// One text, valid as long as the object lives. Zero-terminated as all texts of the agent's are.
template <class Character>
class BorrowedText {
public:
    // No text: null.
    explicit BorrowedText(const TextFunctions& textFunctions) noexcept : functions(textFunctions) {}
    // A variant's text, with zeros in it; never null.
    [[gnu::always_inline]] BorrowedText(const TextFunctions& textFunctions, ny_variant_t* variant)
        : BorrowedText(textFunctions) {
        if (!functions.AreCurrent()) {
            throw corvane::ny::utils::exception(NY_FUNCTION_MISSING);
        }
        Read(variant);
    }
    // The text in the other kind of character, UTF-8 to UTF-16 or back, the agent's way: through a variant. Never null.
    template <class Other>
    [[gnu::always_inline]] BorrowedText(const TextFunctions& textFunctions, std::basic_string_view<Other> source)
        : BorrowedText(textFunctions) {
        const TextVariant variant(functions, source);
        Read(variant.Get());
    }
    [[gnu::always_inline]] ~BorrowedText() {
        if (buffer != nullptr) {
            functions.AreCurrent() ? functions.Of<Character>().releaseBuffer(buffer) : ReleaseHandle(buffer);
        }
    }
    BorrowedText(const BorrowedText&) = delete;
    BorrowedText& operator=(const BorrowedText&) = delete;

    const Character* Get() const noexcept { return text; }
    // No longer than either of the agent's two answers. Raises std::bad_alloc when they name a length that no memory
    // holds.
    std::basic_string_view<Character> View() const {
        if (length > std::basic_string<Character>().max_size()) {
            throw std::bad_alloc();
        }
        return {text, length};
    }

private:
    using Buffer = typename std::remove_cvref_t<decltype(std::declval<TextFunctions>().Of<Character>())>::Buffer;

    // The agent's contract: the length of the first call, the text of the second. The agent is given places beside this
    // object rather than in it, which lets it be kept in registers.
    [[gnu::always_inline]] void Read(ny_variant_t* variant) {
        const auto& calls = functions.Of<Character>();
        Buffer* given = nullptr;
        const int32_t result = calls.getBuffer(variant, &given);
        buffer = given;
        corvane::ny::utils::Check(result);
        const Character* characters = nullptr;
        size_t first = 0;
        corvane::ny::utils::Check(calls.getText(given, &characters, &first));
        size_t second = first;
        corvane::ny::utils::Check(calls.getText(given, &characters, &second));
        text = characters != nullptr ? characters : noText;
        length = characters != nullptr ? std::min(first, second) : 0;
    }

    static constexpr Character noText[] = {0};

    const TextFunctions& functions;
    Buffer* buffer = nullptr;
    const Character* text = nullptr;
    size_t length = 0;
};

using BorrowedNarrow = BorrowedText<char>;
using BorrowedWide = BorrowedText<wchar_t>;
