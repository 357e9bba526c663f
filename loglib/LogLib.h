/// @file
/// The host's log: where the bridge's policy code writes what an operator of the product should find.
///
/// LogLib.dll implements it in a simple way. A product with a log of its own puts a LogLib.dll of its own in the place
/// of this one. The bridge imports from it `getLogManager` and the two call operators of LogUtils::LogEvent, under the
/// names that LogLib.def lists for mingw-w64's compiler, and hands the manager on without calling it.
///
/// Everything here may be called on any thread, at any time but from DllMain. Narrow text is UTF-8, wide text UTF-16,
/// both zero-terminated.
#pragma once

#include <cstdint>

/// What the host's log knows.
namespace LogUtils {

/// One event on its way to the log, valid during the call that it is given to. No pointer is null.
struct LogRecord {
    const char* sourceFile;    ///< where it was logged, as the caller says
    int32_t sourceLine;        ///< in that file
    int32_t severity;          ///< as the caller gave it
    const wchar_t* component;  ///< the part of the program that logs
    const wchar_t* text;       ///< as the caller gave it, line breaks included
};

/// Sees every event, for tests and for hosts that show the log themselves.
class LogListener {
public:
    /// Slot 1: Called on the thread that logs, for one event at a time, before the event is written. May itself log.
    /// What it throws is dropped.
    virtual void OnLogEvent(const LogRecord& event) = 0;

protected:
    ~LogListener() = default;
};

/// Takes the events. One for the process, which is never destroyed; the order of the slots is the contract. Nothing
/// that goes wrong in it disturbs the caller: it throws nothing, and leaves the thread's last error as it was.
class LogManager {
public:
    /// Slot 1: Writes one event as one line of UTF-8, at the end of the file that SetFile chose, else of the file that
    /// the environment variable LOGLIB_FILE names, else to the debugger's output:
    ///
    ///     <UTC time> <process id> severity=<severity> <component> <file>(<line>): <text>
    ///
    /// for example "2026-03-01T12:00:00.250Z 4711 severity=8 NySpb policy/X.cpp(21): Successfully set X ". Line breaks
    /// and other control characters are written as escapes ("\n", "\x1B"), so that one event is one line. The file is
    /// made when it is not there, and open only while a line is written: it may be moved or deleted at any time, and
    /// several processes may share it. A line that the file does not take goes to the debugger's output; an event for
    /// which there is no memory is lost.
    ///
    /// The variable counts only in a process with the rights of an ordinary program of its user. One that is elevated
    /// or has an integrity above medium, a service (any process of session 0), and one of which that cannot be found
    /// out leave it alone: the user who set their environment may have fewer rights than they. Such a process chooses
    /// its file with SetFile.
    virtual void Write(const LogRecord& event) noexcept = 0;

    /// Slot 2: Chooses the file, by its whole path, which is copied; an empty path chooses the debugger's output, null
    /// what the environment says, where that counts. False, and nothing changes, for a path of more than 32,766
    /// characters.
    virtual bool SetFile(const wchar_t* path) noexcept = 0;

    /// Slot 3: Has the listener, not owned, told of every event; null has none told. Returns the one before, which is
    /// not called any more: a call under way on another thread is waited for, at most 15 seconds, so hold no lock that
    /// the listener needs. Without memory for a new listener nothing changes, and null is returned.
    virtual LogListener* SetListener(LogListener* listener) noexcept = 0;

protected:
    ~LogManager() = default;
};

/// What is known of an event before its text; calling it logs the text. Keeps the pointers that it is given.
class LogEvent {
public:
    /// @param sourceFile   where it is logged.
    /// @param sourceLine   the line there.
    /// @param severity     3 for a failure and 8 for all else is what the bridge writes; any number is written as it
    /// is.
    /// @param component    the event's own; a call may name another.
    /// @param manager      where the event goes; null has it go nowhere.
    /// @param loggingMode  for logs that know several ways; the bridge says 2. Looked at by nothing here.
    /// @param reserved     as loggingMode; the bridge says false.
    constexpr LogEvent(const char* sourceFile, int32_t sourceLine, int32_t severity, const char* component,
                       LogManager* manager, int32_t loggingMode, bool reserved) noexcept
        : file(sourceFile),
          ownComponent(component),
          target(manager),
          line(sourceLine),
          level(severity),
          mode(loggingMode),
          isReserved(reserved) {}

    /// Logs the text under the component that is named here, or under the event's own when that is null. A null text is
    /// logged as "<null>". Throws nothing.
    void operator()(const wchar_t* component, const wchar_t* text) const;

    /// The same with a text that printf makes of the format and the arguments.
    void operator()(const wchar_t* component, const char* format, ...) const
#if defined(__GNUC__) || defined(__clang__)
        __attribute__((format(printf, 3, 4)))
#endif
        ;

private:
    const char* file;
    const char* ownComponent;
    LogManager* target;
    int32_t line;
    int32_t level;
    [[maybe_unused]] int32_t mode;
    [[maybe_unused]] bool isReserved;
};

}  // namespace LogUtils

extern "C" {

/// The process's manager; never null.
LogUtils::LogManager* getLogManager();

}  // extern "C"
