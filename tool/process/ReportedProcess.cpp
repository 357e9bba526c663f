#include "tool/process/ReportedProcess.h"

#include <algorithm>
#include <system_error>

#include "tool/process/ChildProcess.h"

namespace tool {

namespace {

// Reads until the process says no more. Whether it always said something in time.
bool ReadLines(ChildProcess& process, const ReportedOptions& options, std::vector<std::string>& lines) {
    constexpr std::chrono::milliseconds silence{1000};
    const std::chrono::milliseconds first = std::min(silence, options.patience);
    bool isTold = false;
    for (;;) {
        std::string line;
        ChildProcess::Read read = process.NextLine(first, line);
        if (read == ChildProcess::Read::Timeout) {
            if (!isTold && options.onSilence) {
                options.onSilence(lines.empty() ? std::string() : lines.back());
                isTold = true;
            }
            read = process.NextLine(options.patience - first, line);
        }
        if (read != ChildProcess::Read::Line) {
            return read == ChildProcess::Read::End;
        }
        lines.push_back(line);
    }
}

}  // namespace

ReportedEnd RunReported(std::vector<std::string> arguments, const ReportedOptions& options) {
    arguments.emplace_back("--report");
    ReportedEnd end;
    try {
        ChildProcess process(arguments, "", true);
        // The end of the lines is not yet the end of the process.
        end.how = ReadLines(process, options, end.lines) && process.WaitForExit(options.patience).has_value()
                      ? ReportedEnd::How::Ended
                      : ReportedEnd::How::Silent;
        process.Terminate();
        end.code = process.WaitForExit(std::chrono::milliseconds(0)).value_or(1);
    } catch (const std::system_error& failure) {
        end.code = static_cast<DWORD>(failure.code().value());
    }
    return end;
}

ReportWriter::ReportWriter(uint64_t number) : handle(reinterpret_cast<HANDLE>(static_cast<uintptr_t>(number))) {
    // Programs that are started here must not keep it open.
    ::SetHandleInformation(handle, HANDLE_FLAG_INHERIT, 0);
}

void ReportWriter::Write(const std::string& line) const {
    const std::string whole = line + "\n";
    const std::lock_guard lock(mutex);
    DWORD written = 0;
    ::WriteFile(handle, whole.data(), static_cast<DWORD>(whole.size()), &written, nullptr);
}

}  // namespace tool
