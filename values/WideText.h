#pragma once

#include <array>
#include <string>
#include <string_view>

#include "values/TextFunctions.h"

namespace bridge {

// A text of the agent's as wide text, in memory of its own: on the heap when it is long. Zero-terminated, with its
// exact length. Another text takes the memory of the one before.
class WideText {
public:
    // No text: null.
    WideText() = default;
    // Raises what Assign does.
    explicit WideText(std::string_view narrow, const LibrariesInUse* inUse = nullptr);
    WideText(const WideText&) = delete;
    WideText& operator=(const WideText&) = delete;

    // Raises the agent exception with the agent's code when it does not convert the text, and std::bad_alloc when there
    // is no memory, or when the agent names a length that no memory holds. There is no text then.
    void Assign(const TextFunctions& functions, std::string_view narrow);
    void Clear() noexcept { text = {}; }

    const wchar_t* Get() const noexcept { return text.data(); }
    std::wstring_view View() const noexcept { return text; }

private:
    std::wstring_view text;
    std::array<wchar_t, 64> shortText;  // only what `text` needs is ever written
    std::wstring longText;
};

}  // namespace bridge
