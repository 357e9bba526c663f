// Reads numbers and truth values from the texts of settings.
#pragma once

#include <cstdint>
#include <string>

namespace bridge {

// Whether the text is TRUE or FALSE in any letter case; it ends at a zero. FALSE counts as well, kept on purpose:
// modules rely on it.
bool IsBooleanText(const std::string& text) noexcept;

// The decimal number at the text's beginning, after blanks; 0 when there is none. One that does not fit is the greatest
// or the least that does, where the C function atoi does not say what happens.
int32_t NumberOfText(const std::string& text) noexcept;

}  // namespace bridge
