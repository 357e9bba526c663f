#pragma once

#include <fmt/format.h>

#include <string_view>
#include <utility>

#include "SampleModule.h"
#include "vsmsgbus.hpp"

// Says what happens, through the function that the module was given.
class Speaker {
public:
    Speaker(SampleModuleSay functionOfHost, void* userDataOfHost) : say(functionOfHost), userData(userDataOfHost) {}

    // Tells an action of the module.
    template <class... Arguments>
    void Say(fmt::format_string<Arguments...> text, Arguments&&... arguments) const {
        say("module", fmt::format(text, std::forward<Arguments>(arguments)...).c_str(), userData);
    }

    // Tells a line that the bridge logs for the module.
    void SayLogLine(int level, std::wstring_view line) const {
        say("bridge", fmt::format("log line, level {}: {}", level, vsmsgbus::Utf8(line)).c_str(), userData);
    }

private:
    const SampleModuleSay say;
    void* const userData;
};
