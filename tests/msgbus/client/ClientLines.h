#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "support/LineLog.h"

// Takes a client's log lines, each as "<severity> <module>: <text>". The dispatcher's tell addresses and are kept
// apart.
struct ClientLines {
    LineLog client;
    LineLog dispatcher;

    // To be given to the client with the object as user data.
    static int32_t Take(uint32_t severity, const char* module, const char* message, void* userData) noexcept {
        auto& lines = *static_cast<ClientLines*>(userData);
        LineLog& log = std::string_view(module) == "dispatcher" ? lines.dispatcher : lines.client;
        log.Add(std::to_string(severity) + " " + module + ": " + message);
        return answer;
    }

    // Take's answer, unlike any code of the bridge's or the agent's.
    static constexpr int32_t answer = 4711;
};

// Lines that many tests wait for or expect.
inline constexpr char toStart[] = "5 ny_client: notifying point product to start client.";
inline constexpr char toStop[] = "5 ny_client: notifying point product to stop client.";
