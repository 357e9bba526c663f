// Between UTF-8 and the wide text of the platform.
#pragma once

#include <string>
#include <string_view>

namespace simulator {

// Both keep embedded zeros and put U+FFFD in the place of what is not well formed: each longest beginning of a
// character in UTF-8, each surrogate without its other half in UTF-16.
std::wstring WideFromUtf8(std::string_view text);
std::string Utf8FromWide(std::wstring_view text);

}  // namespace simulator
