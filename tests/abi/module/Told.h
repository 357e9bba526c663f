#pragma once

#include <cstdint>
#include <string>

// A line for the test, told when it is complete.
class Told {
public:
    Told() = default;
    ~Told();
    Told(const Told&) = delete;
    Told& operator=(const Told&) = delete;

    Told& operator<<(const wchar_t* text);  // null is told as "<null>"
    Told& operator<<(int32_t number);

private:
    std::wstring line;
};
