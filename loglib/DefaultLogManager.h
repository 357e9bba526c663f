#pragma once

#include "base/OwnerLock.h"
#include "loglib/LogDestination.h"
#include "loglib/LogLib.h"

// What LogUtils::LogManager says, and no more.
class DefaultLogManager final : public LogUtils::LogManager {
public:
    // The one of the process. It is never destroyed, so that what is destroyed at the end of the process can still log.
    static DefaultLogManager& Instance() noexcept;

    void Write(const LogUtils::LogRecord& event) noexcept override;
    bool SetFile(const wchar_t* path) noexcept override;
    LogUtils::LogListener* SetListener(LogUtils::LogListener* newListener) noexcept override;

private:
    void Tell(const LogUtils::LogRecord& event);

    LogDestination destination;
    // Held while the listener is called. Recursive, because the listener may log.
    CriticalSection listening;
    LogUtils::LogListener* listener = nullptr;
};
