#include "values/CUniStream.h"

#include <windows.h>

#include <climits>
#include <cstdio>
#include <stdexcept>

#include "base/Boundary.h"
#include "base/LastErrorKeeper.h"

using namespace bridge;

namespace VsKit {

CUniStream& CUniStream::operator<<(const wchar_t* wide) noexcept {
    return wide != nullptr ? *this << std::wstring_view(wide) : *this;
}

CUniStream& CUniStream::operator<<(std::wstring_view wide) noexcept {
    isGood = isGood && Guarded([&] { buffer.append(wide); });
    return *this;
}

CUniStream& CUniStream::operator<<(const char* narrow) noexcept {
    return narrow != nullptr ? *this << std::string_view(narrow) : *this;
}

CUniStream& CUniStream::operator<<(std::string_view narrow) noexcept {
    if (!narrow.empty()) {
        isGood = isGood && Guarded([&] { AppendWidened(narrow); });
    }
    return *this;
}

CUniStream& CUniStream::operator<<(int32_t number) noexcept {
    wchar_t digits[16] = {};
    std::swprintf(digits, sizeof digits / sizeof digits[0], isHex ? L"0x%8.8x" : L"%d", number);
    isHex = false;
    return *this << digits;
}

CUniStream& CUniStream::Hex() noexcept {
    isHex = true;
    return *this;
}

void CUniStream::AppendWidened(std::string_view narrow) {
    const LastErrorKeeper keeper;
    if (narrow.size() > INT_MAX) {
        throw std::length_error("narrow text too long to widen");
    }
    const int size = static_cast<int>(narrow.size());
    const int length = ::MultiByteToWideChar(CP_UTF8, 0, narrow.data(), size, nullptr, 0);
    const size_t before = buffer.size();
    buffer.resize(before + static_cast<size_t>(length));
    ::MultiByteToWideChar(CP_UTF8, 0, narrow.data(), size, buffer.data() + before, length);
}

}  // namespace VsKit
