#include "scheduler/SettingText.h"

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <string_view>

namespace bridge {

namespace {

char UpperCase(char letter) noexcept {
    return letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
}

bool EqualsInAnyCase(std::string_view text, std::string_view upperCase) noexcept {
    return std::equal(text.begin(), text.end(), upperCase.begin(), upperCase.end(),
                      [](char letter, char wanted) { return UpperCase(letter) == wanted; });
}

}  // namespace

bool IsBooleanText(const std::string& text) noexcept {
    const std::string_view visible = text.c_str();
    return EqualsInAnyCase(visible, "TRUE") || EqualsInAnyCase(visible, "FALSE");
}

int32_t NumberOfText(const std::string& text) noexcept {
    using Limits = std::numeric_limits<int32_t>;
    const long long number = std::strtoll(text.c_str(), nullptr, 10);
    return static_cast<int32_t>(std::clamp<long long>(number, Limits::min(), Limits::max()));
}

}  // namespace bridge
