#pragma once

#include <windows.h>

#include "base/UniqueHandle.h"

namespace bridge {

// The longest message-bus version that is read, terminator included; what is longer does not count as a version.
inline constexpr DWORD agentVersionSize = 19;
using AgentVersion = char[agentVersionSize + 1];

// The agent's registry key, HKEY_LOCAL_MACHINE\Software\Corvane\Agent\, as the install watcher uses it.
class AgentKey {
public:
    // The key's name in messages.
    static constexpr char displayName[] = R"(Corvane\Agent\)";

    // Each answers the system's error code, ERROR_SUCCESS when it went well.
    LSTATUS Open() noexcept;
    // Has `event` signalled, once, at the next change of a name or value in the key or below it.
    LSTATUS Watch(HANDLE event) const noexcept;
    // Reads the value "MsgbusVersion" into `version`, zero-filled behind the text; all zeros on failure.
    LSTATUS ReadVersion(AgentVersion& version) const noexcept;

    bool IsOpen() const noexcept { return key != nullptr; }
    void Close() noexcept { key.reset(); }

private:
    UniqueKey key;
};

}  // namespace bridge
