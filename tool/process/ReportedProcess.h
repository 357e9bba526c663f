#pragma once

#include <windows.h>

#include <chrono>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

namespace tool {

// How a process ended that reports what it does, line by line.
struct ReportedEnd {
    enum class How {
        Ended,       // by itself, with an exit status
        Silent,      // it was ended, because it said nothing for too long
        NotStarted,  // `code` is the system's error
    };

    How how = How::NotStarted;
    DWORD code = 0;
    std::vector<std::string> lines;  // without their ends, in the order in which they came
};

struct ReportedOptions {
    std::chrono::milliseconds patience;  // for the next line, or the end
    // Called once, with what was said last, when nothing was said for a second; may be empty.
    std::function<void(const std::string& lastLine)> onSilence;
};

// Runs this program once more and waits for it. Its arguments are those given, and "--report" with the number of the
// handle to which it is to write its lines. Its standard input is empty, its standard output leads nowhere, and the
// processes that it starts end with it.
ReportedEnd RunReported(std::vector<std::string> arguments, const ReportedOptions& options);

// Writes the lines of a process that RunReported has started, in that process.
class ReportWriter {
public:
    // `number` is the value of "--report".
    explicit ReportWriter(uint64_t number);
    // Writes one line, without its end. Any thread.
    void Write(const std::string& line) const;

private:
    HANDLE handle;
    mutable std::mutex mutex;
};

}  // namespace tool
