#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace VsKit {

// The wide text builder with which every message is composed. Appends happen only while the stream is good; one that
// finds no memory leaves the text as it is and makes the stream not good, so that composing a message never fails its
// caller.
class CUniStream {
public:
    // Appends wide text. Null appends nothing.
    CUniStream& operator<<(const wchar_t* wide) noexcept;
    CUniStream& operator<<(std::wstring_view wide) noexcept;

    // Appends narrow UTF-8 text, widened. Null and empty append nothing. The thread's last-error value is kept.
    CUniStream& operator<<(const char* narrow) noexcept;
    CUniStream& operator<<(std::string_view narrow) noexcept;

    // Appends "%d", or "0x%8.8x" once after Hex().
    CUniStream& operator<<(int32_t number) noexcept;

    // The next integer is written in hexadecimal.
    CUniStream& Hex() noexcept;

    const std::wstring& Text() const noexcept { return buffer; }
    bool IsGood() const noexcept { return isGood; }

    // Exchanges the text for another one, to whose end later appends go.
    void Swap(std::wstring& other) noexcept { buffer.swap(other); }

private:
    void AppendWidened(std::string_view narrow);

    std::wstring buffer;
    bool isGood = true;
    bool isHex = false;
};

}  // namespace VsKit
