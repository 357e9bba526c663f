/// @file
/// The settings of a task, with their types.
#pragma once

#include <algorithm>
#include <charconv>
#include <concepts>
#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

#include "VsMsgbus/TaskEnforcer.h"
#include "VsMsgbus/cpp/Text.hpp"

namespace vsmsgbus {

/// A setting that was asked for as a T: absent, malformed (there, but no T), or found.
template <class T>
class TaskSetting {
public:
    /// Makes an absent setting.
    TaskSetting() = default;
    /// Makes a setting that is there. The value of a malformed one has no meaning.
    TaskSetting(std::wstring settingText, bool isWellFormed, T settingValue)
        : text(std::move(settingText)), value(std::move(settingValue)), state(isWellFormed ? Found : Malformed) {}

    /// Whether the agent does not give it.
    bool IsAbsent() const noexcept { return state == Absent; }
    /// Whether it is there and no T.
    bool IsMalformed() const noexcept { return state == Malformed; }
    /// Whether it was found.
    explicit operator bool() const noexcept { return state == Found; }

    /// Only when it was found.
    const T& operator*() const noexcept { return value; }
    /// The value when it was found, else the other one.
    T ValueOr(T otherwise) const { return state == Found ? value : std::move(otherwise); }
    /// As the agent gives it, also when it is malformed.
    const std::wstring& AsText() const noexcept { return text; }

private:
    enum State { Absent, Malformed, Found };

    std::wstring text;
    T value{};
    State state = Absent;
};

namespace detail {

inline bool Parse(std::wstring_view text, std::wstring& value) {
    value = text;
    return true;
}

inline bool Parse(std::wstring_view text, std::string& value) {
    value = Utf8(text);
    return true;
}

/// TRUE and FALSE, in any letter case.
inline bool Parse(std::wstring_view text, bool& value) {
    const auto isWord = [&](std::string_view word) {
        return text.size() == word.size() && std::equal(text.begin(), text.end(), word.begin(), [](wchar_t a, char b) {
                   return (a >= L'a' && a <= L'z' ? a - L'a' + L'A' : a) == static_cast<wchar_t>(b);
               });
    };
    value = isWord("TRUE");
    return value || isWord("FALSE");
}

/// Decimal digits with or without a minus sign, nothing else, in the range of the type.
template <std::integral Number>
bool Parse(std::wstring_view text, Number& value) {
    const std::string digits = Utf8(text);
    const char* const end = digits.data() + digits.size();
    const auto [stopped, error] = std::from_chars(digits.data(), end, value);
    return error == std::errc() && stopped == end;
}

/// Shows each setting of a section to a callable.
template <class Visitor>
class SettingVisitor final : public VsKitMsgbus::INYTaskEnforcer::ITaskBag::ISettingVisitor {
public:
    explicit SettingVisitor(Visitor& settingVisitor) : visitor(settingVisitor) {}
    void BeginSettings() override {}
    void VisitSetting(const wchar_t* /*section*/, const wchar_t* key, const wchar_t* value) override {
        visitor(std::wstring_view(key), std::wstring_view(value));
    }

private:
    Visitor& visitor;
};

}  // namespace detail

/// A task's settings, valid during the agent's call, on its thread and on those that it waits for. Each function asks
/// the agent anew.
class TaskSettings {
public:
    /// The bag that the bridge hands over.
    using Bag = VsKitMsgbus::INYTaskEnforcer::ITaskBag;

    /// For the layer alone.
    explicit TaskSettings(Bag& taskBag) : bag(taskBag) {}
    TaskSettings(const TaskSettings&) = delete;
    TaskSettings& operator=(const TaskSettings&) = delete;

    /// Empty when the task has none.
    std::wstring TaskName() { return bag.TaskName(); }

    /// One setting as a text (std::wstring or std::string), a bool or a whole number of any type. Absent as well when
    /// the agent does not give it.
    template <class T>
    TaskSetting<T> Get(const Text& section, const Text& name) {
        VsKitMsgbus::lpc_buffer buffer;
        const VsKitMsgbus::ReleasedAtEnd released{buffer};
        if (!bag.GetText(section.Terminated(), name.Terminated(), &buffer)) {
            return {};
        }
        std::wstring text = VsKitMsgbus::TakeWideText(buffer);
        T value{};
        const bool isWellFormed = detail::Parse(text, value);
        return {std::move(text), isWellFormed, std::move(value)};
    }

    /// Calls `visitor(name, value)` for each setting of the section, in the agent's order.
    /// @returns false when the agent does not give the section or one of its texts, or the visitor throws, which goes
    /// no further; what comes before was then visited.
    template <class Visitor>
    bool Walk(const Text& section, Visitor&& visitor) {
        detail::SettingVisitor shown(visitor);
        return bag.IterateSettings(&shown, section.Terminated()) == 1;
    }

    /// The section's names and values; empty when the agent does not give it.
    std::map<std::wstring, std::wstring, std::less<>> Section(const Text& section) {
        std::map<std::wstring, std::wstring, std::less<>> settings;
        Walk(section, [&](std::wstring_view name, std::wstring_view value) {
            settings.insert_or_assign(std::wstring(name), std::wstring(value));
        });
        return settings;
    }

    /// How many sections of settings there are; 0 also when the agent does not give them.
    size_t CountSections() { return bag.CountEntries(); }

private:
    Bag& bag;
};

}  // namespace vsmsgbus
