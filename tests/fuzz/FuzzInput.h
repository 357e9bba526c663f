#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

// One input of the fuzzer, read from its beginning. Once it is used up every byte is 0, with which whatever is decided
// goes well and comes to an end.
class FuzzInput {
public:
    FuzzInput(const uint8_t* inputData, size_t inputSize) noexcept : data(inputData), left(inputSize) {}

    bool IsOver() const noexcept { return left == 0; }

    uint8_t Byte() noexcept;
    uint64_t Number(unsigned bytes = 4) noexcept;
    // Decided by one byte: about one time in sixteen, about every other time, and a number below `limit`.
    bool Rarely() noexcept { return Byte() >= 0xF0; }
    bool Often() noexcept { return (Byte() & 1) != 0; }
    unsigned Below(unsigned limit) noexcept { return Byte() % limit; }

    // Mostly NY_OK, else any other code.
    int32_t Code() noexcept;

    // Any bytes, zeros and what is no UTF-8 included; mostly short, sometimes longer than any buffer on the way.
    std::string Text();
    // The same as wide text: each unit is a byte, or four.
    std::wstring WideText();

private:
    const uint8_t* data;
    size_t left;
};

// The text up to its first zero in memory of exactly its size, so that reading one character too many is seen; null for
// every sixteenth one.
template <class Character>
class ExactText {
public:
    ExactText(FuzzInput& input, const std::basic_string<Character>& text);
    ~ExactText() { delete[] characters; }
    ExactText(const ExactText&) = delete;
    ExactText& operator=(const ExactText&) = delete;

    const Character* Get() const noexcept { return characters; }

private:
    Character* characters = nullptr;
};

// Reads the text to its end. Null is accepted.
void Touch(const char* text) noexcept;
void Touch(const wchar_t* text) noexcept;
// Reads that much.
void Touch(const void* bytes, size_t size) noexcept;

// Ends the process with the message: what must not be has been seen.
[[noreturn]] void Found(const char* what) noexcept;
