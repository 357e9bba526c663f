#pragma once

#include <cstddef>
#include <cstdint>

// A line for the test, composed without a C runtime: what does not fit is cut off.
class Told {
public:
    Told& operator<<(const wchar_t* text);  // null is told as "<null>"
    Told& operator<<(int32_t number);

    // Tells the line.
    ~Told();
    Told() = default;
    Told(const Told&) = delete;
    Told& operator=(const Told&) = delete;

private:
    void Append(wchar_t unit);

    static constexpr size_t capacity = 512;
    wchar_t line[capacity];
    size_t length = 0;
};
