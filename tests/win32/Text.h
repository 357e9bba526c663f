#pragma once

#include <string>
#include <string_view>

namespace win32 {

// Between UTF-8 and UTF-32; what is malformed becomes U+FFFD.
std::wstring Widen(std::string_view text);
std::string Narrow(std::wstring_view wide);

}  // namespace win32
