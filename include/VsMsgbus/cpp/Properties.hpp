/// @file
/// Properties: what a product tells the agent of itself.
#pragma once

#include <chrono>
#include <concepts>
#include <cstdint>
#include <functional>
#include <string>
#include <utility>

#include "VsMsgbus/CollectProperties.h"
#include "VsMsgbus/cpp/Log.hpp"
#include "VsMsgbus/cpp/Text.hpp"

namespace vsmsgbus {

/// The properties of one question of the agent's, valid while the handler runs, on its thread and on those that it
/// waits for.
class Properties {
public:
    /// For the layer alone.
    explicit Properties(VsKitMsgbus::INYCollectProperties::ISet& toFill) : set(toFill) {}
    Properties(const Properties&) = delete;
    Properties& operator=(const Properties&) = delete;

    /// Gives one property to the agent.
    /// @returns false when the agent refused it or is gone; the log handler is then told why.
    bool Set(const Text& path, const Text& name, const Text& value) {
        return set.SetProperty(path.Terminated(), name.Terminated(), value.Terminated());
    }
    /// A number, in decimal digits.
    template <std::integral Number>
    requires(!std::same_as<Number, bool>) bool Set(const Text& path, const Text& name, Number value) {
        return Set(path, name, Text(std::to_wstring(value)));
    }
    /// "true" or "false".
    template <std::same_as<bool> Bool>
    bool Set(const Text& path, const Text& name, Bool value) {
        return Set(path, name, Text(value ? L"true" : L"false"));
    }
    /// A moment in UTC with whole seconds, as in "2026-03-01T08:05:09Z".
    bool Set(const Text& path, const Text& name, std::chrono::system_clock::time_point value) {
        return Set(path, name, Text(InUtc(value)));
    }

private:
    static std::wstring InUtc(std::chrono::system_clock::time_point moment) {
        using namespace std::chrono;
        const auto day = floor<days>(moment);
        const year_month_day date(day);
        const hh_mm_ss time(floor<seconds>(moment - day));
        return Padded(static_cast<int>(date.year()), 4) + L'-' + Padded(static_cast<unsigned>(date.month()), 2) + L'-' +
               Padded(static_cast<unsigned>(date.day()), 2) + L'T' + Padded(time.hours().count(), 2) + L':' +
               Padded(time.minutes().count(), 2) + L':' + Padded(time.seconds().count(), 2) + L'Z';
    }

    template <class Number>
    static std::wstring Padded(Number number, size_t digits) {
        const std::wstring text = std::to_wstring(number);
        return std::wstring(text.size() < digits ? digits - text.size() : 0, L'0') + text;
    }

    VsKitMsgbus::INYCollectProperties::ISet& set;
};

/// Gives the product's properties. For one product never called on two threads at a time.
using PropertiesHandler = std::function<void(Properties& properties)>;

}  // namespace vsmsgbus
