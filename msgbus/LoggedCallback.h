#pragma once

#include <cstdint>
#include <utility>

#include "agent/ny_agent.h"
#include "msgbus/BridgeLog.h"
#include "values/AgentException.h"
#include "values/CUniStream.h"

namespace bridge {

// Runs the body of a callback of the agent's, and returns the agent's answer: NY_OK, the code of an agent exception, or
// NY_UNEXPECTED for any other one. A failure goes to the log sink: `writeHead(text)` writes the beginning of its line.
template <class Body, class WriteHead>
int32_t RunLogged(Body&& body, const WriteHead& writeHead) noexcept {
    VsKit::CUniStream line;
    try {
        std::forward<Body>(body)();
        return NY_OK;
    } catch (const AgentException& failure) {
        writeHead(line);
        WriteBridgeLog(line << L", exception: [" << failure.Code() << L"]");
        return failure.Code();
    } catch (...) {
        writeHead(line);
        WriteBridgeLog(line << L" due to unknown exception");
        return NY_UNEXPECTED;
    }
}

}  // namespace bridge
