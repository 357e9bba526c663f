#pragma once

#include <string>
#include <string_view>
#include <vector>

// The text as lines of at most `width` columns, one for each character of its UTF-8. Lines are broken at spaces, inside
// a word only when it is longer than a line. Those after the first stand four columns further to the right than the
// first; `width` is larger than that.
std::vector<std::string> Wrap(std::string_view text, size_t width);
