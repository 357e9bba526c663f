/// @file
/// Where a module's log lines go.
#pragma once

namespace VsKitMsgbus {

/// Where the bridge writes log lines for a module. Implemented by the module, which owns it.
///
/// Called on the thread that caused the line: a module's own inside an export, the bridge's watcher thread, or one of
/// the agent's. The bridge may call it from two threads at once. An exception of Write is dropped.
class ILogSink {
public:
    /// Slot 1: `level`: 3 for lines of the bridge and of the agent, 5 for a property that could not be added.
    /// `text`: zero-terminated UTF-16, without a line end, valid during the call.
    virtual void Write(int level, const wchar_t* text) = 0;

protected:
    ~ILogSink() = default;
};

}  // namespace VsKitMsgbus
