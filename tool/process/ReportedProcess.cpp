#include "tool/process/ReportedProcess.h"

#include <algorithm>
#include <condition_variable>
#include <filesystem>
#include <mutex>
#include <thread>

#include "base/UniqueHandle.h"
#include "checking/Texts.h"
#include "tool/process/OwnProgram.h"

namespace tool {

namespace {

using bridge::UniqueHandle;

// As CommandLineToArgvW takes words apart.
std::wstring QuotedWord(const std::string& word) {
    std::wstring quoted = L"\"";
    size_t backslashes = 0;
    for (const wchar_t character : checking::Wide(word)) {
        if (character == L'"') {
            quoted.append(backslashes + 1, L'\\');
        }
        backslashes = character == L'\\' ? backslashes + 1 : 0;
        quoted += character;
    }
    return quoted.append(backslashes, L'\\') + L'"';
}

// This program, run once more; whatever it starts belongs to it.
class StartedProcess {
public:
    StartedProcess(const std::vector<std::string>& words, HANDLE report) {
        const std::wstring program = OwnProgram().wstring();
        std::wstring command = L'"' + program + L'"';
        for (const std::string& word : words) {
            command += L' ' + QuotedWord(word);
        }
        command += L" --report " + std::to_wstring(reinterpret_cast<uintptr_t>(report));
        STARTUPINFOW startup{};
        startup.cb = sizeof startup;
        startup.dwFlags = STARTF_USESTDHANDLES;
        PROCESS_INFORMATION started{};
        if (::CreateProcessW(program.c_str(), command.data(), nullptr, nullptr, TRUE,
                             CREATE_SUSPENDED | CREATE_NO_WINDOW, nullptr, nullptr, &startup, &started) == FALSE) {
            error = ::GetLastError();
            return;
        }
        process.reset(started.hProcess);
        const UniqueHandle thread(started.hThread);
        job.reset(::CreateJobObjectW(nullptr, nullptr));
        JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits{};
        limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
        ::SetInformationJobObject(job.get(), JobObjectExtendedLimitInformation, &limits, sizeof limits);
        ::AssignProcessToJobObject(job.get(), process.get());
        ::ResumeThread(thread.get());
    }

    bool IsStarted() const { return process != nullptr; }
    DWORD Error() const { return error; }
    bool WaitForEnd(std::chrono::milliseconds limit) const {
        return ::WaitForSingleObject(process.get(), static_cast<DWORD>(limit.count())) == WAIT_OBJECT_0;
    }
    // Ends it if it has not ended, and what it has started. Its exit status.
    DWORD End() const {
        ::TerminateProcess(process.get(), 1);
        ::WaitForSingleObject(process.get(), INFINITE);
        ::TerminateJobObject(job.get(), 1);
        DWORD status = 0;
        ::GetExitCodeProcess(process.get(), &status);
        return status;
    }

private:
    UniqueHandle process;
    UniqueHandle job;
    DWORD error = ERROR_SUCCESS;
};

// The lines of a pipe as they come, read by a thread of their own.
class LineReader {
public:
    explicit LineReader(UniqueHandle readingEnd) : pipe(std::move(readingEnd)), thread([this] { ReadAll(); }) {}

    // Waits for one line more than `known`, or the end. Whether either came in time.
    bool WaitForMore(size_t known, std::chrono::milliseconds limit) {
        std::unique_lock lock(mutex);
        return changed.wait_for(lock, limit, [&] { return hasEnded || lines.size() > known; });
    }
    bool HasEnded() {
        const std::lock_guard lock(mutex);
        return hasEnded;
    }
    std::vector<std::string> Lines() {
        const std::lock_guard lock(mutex);
        return lines;
    }

private:
    void ReadAll() {
        std::string rest;
        char part[4096];
        DWORD size = 0;
        while (::ReadFile(pipe.get(), part, sizeof part, &size, nullptr) != FALSE && size != 0) {
            rest.append(part, size);
            const std::lock_guard lock(mutex);
            for (size_t end = rest.find('\n'); end != std::string::npos; end = rest.find('\n')) {
                lines.push_back(rest.substr(0, end));
                rest.erase(0, end + 1);
            }
            changed.notify_all();
        }
        const std::lock_guard lock(mutex);
        hasEnded = true;
        changed.notify_all();
    }

    std::mutex mutex;
    std::condition_variable changed;
    std::vector<std::string> lines;
    bool hasEnded = false;
    const UniqueHandle pipe;
    std::jthread thread;  // last: it uses the others
};

// Waits until the process says no more. Whether it always said something in time.
bool FollowLines(LineReader& reader, const ReportedOptions& options) {
    constexpr std::chrono::milliseconds silence{1000};
    const std::chrono::milliseconds first = std::min(silence, options.patience);
    bool isTold = false;
    while (!reader.HasEnded()) {
        const std::vector<std::string> lines = reader.Lines();
        if (reader.WaitForMore(lines.size(), first)) {
            continue;
        }
        if (!isTold && options.onSilence) {
            options.onSilence(lines.empty() ? std::string() : lines.back());
            isTold = true;
        }
        if (!reader.WaitForMore(lines.size(), options.patience - first)) {
            return false;
        }
    }
    return true;
}

}  // namespace

ReportedEnd RunReported(const std::vector<std::string>& words, const ReportedOptions& options) {
    SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
    HANDLE reading = nullptr;
    HANDLE writing = nullptr;
    if (::CreatePipe(&reading, &writing, &inherited, 0) == FALSE) {
        return {ReportedEnd::How::NotStarted, ::GetLastError(), {}};
    }
    UniqueHandle readingEnd(reading);
    UniqueHandle writingEnd(writing);
    ::SetHandleInformation(reading, HANDLE_FLAG_INHERIT, 0);
    const StartedProcess process(words, writing);
    if (!process.IsStarted()) {
        return {ReportedEnd::How::NotStarted, process.Error(), {}};
    }
    writingEnd.reset();
    LineReader reader(std::move(readingEnd));
    ReportedEnd end;
    // The end of the pipe is not yet the end of the process.
    end.how = FollowLines(reader, options) && process.WaitForEnd(options.patience) ? ReportedEnd::How::Ended
                                                                                   : ReportedEnd::How::Silent;
    end.code = process.End();
    end.lines = reader.Lines();
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
