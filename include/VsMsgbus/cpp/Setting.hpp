/// @file
/// One setting of a policy, and settings that are kept.
#pragma once

#include <algorithm>
#include <cstddef>
#include <memory>
#include <string_view>
#include <vector>

namespace vsmsgbus {

namespace detail {

class KeptSettings;

}  // namespace detail

/// A text of a policy: zero-terminated wide text that is kept elsewhere, or none. Its length is counted
/// when it is asked for.
class PolicyText {
public:
    /// None.
    PolicyText() = default;
    /// Zero-terminated; null is none.
    PolicyText(const wchar_t* zeroTerminated) noexcept : text(zeroTerminated) {}

    /// Whether the policy does not have it; it is then empty, too.
    bool IsAbsent() const noexcept { return text == nullptr; }
    /// Zero-terminated, never null.
    const wchar_t* Terminated() const noexcept { return text != nullptr ? text : L""; }
    /// All of it.
    std::wstring_view View() const noexcept { return Terminated(); }
    /// All of it.
    operator std::wstring_view() const noexcept { return View(); }

    /// Whether the texts are the same, letter for letter; a text that is absent is like an empty one.
    friend bool operator==(const PolicyText& one, std::wstring_view other) noexcept { return one.View() == other; }

private:
    const wchar_t* text = nullptr;
};

/// One setting and where it stands.
struct Setting {
    PolicyText feature;   ///< of the policy object
    PolicyText category;  ///< of the policy object
    PolicyText type;      ///< of the policy object
    PolicyText policy;    ///< the policy object's name
    PolicyText settings;  ///< the settings object's name
    PolicyText intParam;  ///< the settings object's first parameter
    PolicyText strParam;  ///< the settings object's second parameter
    PolicyText section;   ///< the section's name
    PolicyText name;      ///< the setting's own
    PolicyText value;     ///< the setting's own
};

/// Settings that are kept with texts of their own: a range of Setting. The texts live as long as this object.
class SettingList {
public:
    /// The first one, in the agent's order.
    auto begin() const noexcept { return all.cbegin(); }
    /// Behind the last one.
    auto end() const noexcept { return all.cend(); }
    /// How many there are.
    size_t size() const noexcept { return all.size(); }
    /// Whether there is none.
    bool empty() const noexcept { return all.empty(); }
    /// By its index, which is less than size().
    const Setting& operator[](size_t index) const noexcept { return all[index]; }

private:
    friend class detail::KeptSettings;

    PolicyText Keep(PolicyText text) {
        if (text.IsAbsent()) {
            return {};
        }
        const size_t size = text.View().size() + 1;
        if (size > left) {
            left = (std::max)(blockSize, size);
            blocks.push_back(std::make_unique<wchar_t[]>(left));
            next = blocks.back().get();
        }
        wchar_t* const kept = next;
        std::copy_n(text.Terminated(), size, kept);
        next += size;
        left -= size;
        return kept;
    }

    static constexpr size_t blockSize = 16384;  // in characters

    std::vector<Setting> all;
    std::vector<std::unique_ptr<wchar_t[]>> blocks;
    wchar_t* next = nullptr;  // in the last block
    size_t left = 0;          // characters there
};

}  // namespace vsmsgbus
