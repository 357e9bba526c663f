#pragma once

#include <string>
#include <string_view>

namespace bridge {

// Between UTF-8 and wide text. What is malformed is replaced. Each throws std::length_error for a text of two gigabytes
// or more, std::runtime_error when the system cannot convert, and std::bad_alloc.
std::wstring WideFromUtf8(std::string_view text);
std::string Utf8FromWide(std::wstring_view text);

}  // namespace bridge
