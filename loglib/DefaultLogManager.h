#pragma once

#include "base/ModuleSlot.h"
#include "loglib/LogDestination.h"
#include "loglib/LogLib.h"

namespace bridge {

// The host's log that LogLib.dll brings: a file or the debugger, and one listener.
class DefaultLogManager final : public LogUtils::LogManager {
public:
    // The process's log manager. It is never destroyed: other objects may log while they are destroyed at the process's
    // end.
    static DefaultLogManager& Instance() noexcept;

    void Write(const LogUtils::LogRecord& event) noexcept override;
    bool SetFile(const wchar_t* path) noexcept override;
    LogUtils::LogListener* SetListener(LogUtils::LogListener* newListener) noexcept override;

private:
    LogDestination destination;
    ModuleSlot<LogUtils::LogListener> listener;
};

}  // namespace bridge
