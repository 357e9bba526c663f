// Texts between the two widths, and comparisons of ids.
#pragma once

#include <string>
#include <string_view>

namespace checking {

// As UTF-8. A null text is empty.
std::string Narrow(const wchar_t* text);
std::string Narrow(std::wstring_view text);
// Converts to UTF-16; bytes that are no UTF-8 become U+FFFD.
std::wstring Wide(std::string_view text);
bool IsUtf8(std::string_view text) noexcept;

// The id without blanks and in small letters: ids that are then the same are told apart by a typing error alone.
std::wstring Folded(std::wstring_view id);

}  // namespace checking
