#pragma once

#include <mutex>
#include <set>
#include <string>

#include "loglib/LogLib.h"
#include "support/LineLog.h"

// Keeps what is logged to the host while it lives: "<severity> <component>: <text>", and from where. One at a time.
class HostLog final : public LogUtils::LogListener {
public:
    HostLog() { getLogManager()->SetListener(this); }
    ~HostLog() { getLogManager()->SetListener(nullptr); }
    HostLog(const HostLog&) = delete;
    HostLog& operator=(const HostLog&) = delete;

    LineLog log;

    std::set<std::string> Files() const {
        const std::lock_guard guard(mutex);
        return files;
    }
    // All different ones.
    std::set<int32_t> SourceLines() const {
        const std::lock_guard guard(mutex);
        return sourceLines;
    }

private:
    void OnLogEvent(const LogUtils::LogRecord& event) override {
        {
            const std::lock_guard guard(mutex);
            files.insert(event.sourceFile);
            sourceLines.insert(event.sourceLine);
        }
        log.Add(std::to_string(event.severity) + " " + Narrow(event.component) + ": " + Narrow(event.text));
    }

    mutable std::mutex mutex;
    std::set<std::string> files;
    std::set<int32_t> sourceLines;
};
