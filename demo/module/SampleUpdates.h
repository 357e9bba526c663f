#pragma once

#include <map>
#include <string>

#include "Speaker.h"
#include "vsmsgbus.hpp"

// Hears of the agent's updates, and keeps what the agent sets as the product's information, to be asked for again.
class SampleUpdates {
public:
    explicit SampleUpdates(const Speaker& moduleSpeaker) : speaker(moduleSpeaker) {}

    // They use this object.
    vsmsgbus::UpdateHandlers Handlers();

private:
    const Speaker& speaker;
    // Read and written by one handler at a time.
    std::map<std::wstring, std::wstring, std::less<>> information{{L"Version", L"1.0.0"}, {L"Language", L"0409"}};
};
