#include "tool/process/ChildProcess.h"

#include <windows.h>

#include <filesystem>
#include <system_error>

#include "tool/process/ThisProgram.h"
#include "tool/text/Utf8.h"

namespace tool {

namespace {

struct Pipe {
    HANDLE reading = nullptr;
    HANDLE writing = nullptr;
};

std::system_error SystemError(DWORD code, const std::string& what) {
    return {static_cast<int>(code), std::system_category(), what + ": error " + std::to_string(code)};
}

HANDLE Inherited(HANDLE handle) {
    ::SetHandleInformation(handle, HANDLE_FLAG_INHERIT, HANDLE_FLAG_INHERIT);
    return handle;
}

Pipe MakePipe() {
    Pipe pipe;
    if (::CreatePipe(&pipe.reading, &pipe.writing, nullptr, 0) == FALSE) {
        throw SystemError(::GetLastError(), "a pipe cannot be made");
    }
    return pipe;
}

HANDLE OpenNullDevice() {
    SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
    return ::CreateFileW(L"NUL", GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, &inherited, OPEN_EXISTING, 0,
                         nullptr);
}

// An argument quoted so that the C runtime's splitting of command lines gives it back: backslashes are doubled where a
// quote follows.
std::wstring Quoted(const std::string& argument) {
    const std::wstring wide = PathOf(argument).wstring();
    std::wstring quoted = L"\"";
    size_t backslashes = 0;
    for (const wchar_t character : wide) {
        if (character == L'"') {
            quoted.append(backslashes + 1, L'\\');
        }
        backslashes = character == L'\\' ? backslashes + 1 : 0;
        quoted += character;
    }
    return quoted.append(backslashes, L'\\') + L"\"";
}

// A job whose processes the system ends when its last handle is closed. This process has the only one, so that they end
// with it, however it ends.
HANDLE MakeJob() {
    HANDLE const job = ::CreateJobObjectW(nullptr, nullptr);
    JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits{};
    limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
    ::SetInformationJobObject(job, JobObjectExtendedLimitInformation, &limits, sizeof limits);
    return job;
}

void WriteAll(HANDLE file, const std::string& text) {
    size_t done = 0;
    DWORD written = 0;
    while (done < text.size() &&
           ::WriteFile(file, text.data() + done, static_cast<DWORD>(text.size() - done), &written, nullptr) != FALSE) {
        done += written;
    }
}

}  // namespace

ChildProcess::ChildProcess(const std::vector<std::string>& arguments, const std::string& input, bool isQuiet) {
    const Pipe toChild = MakePipe();
    const Pipe fromChild = MakePipe();
    std::wstring command = Quoted(Utf8(PathOfThisProgram()));
    for (const std::string& argument : arguments) {
        command += L' ' + Quoted(argument);
    }
    command += L' ' + std::to_wstring(reinterpret_cast<uintptr_t>(Inherited(fromChild.writing)));
    HANDLE const nullDevice = isQuiet ? OpenNullDevice() : nullptr;
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = Inherited(toChild.reading);
    startup.hStdOutput = isQuiet ? nullDevice : ::GetStdHandle(STD_ERROR_HANDLE);
    startup.hStdError = startup.hStdOutput;
    PROCESS_INFORMATION started{};
    const BOOL isStarted = ::CreateProcessW(nullptr, command.data(), nullptr, nullptr, TRUE, CREATE_SUSPENDED, nullptr,
                                            nullptr, &startup, &started);
    const DWORD error = ::GetLastError();
    ::CloseHandle(toChild.reading);
    ::CloseHandle(fromChild.writing);
    if (nullDevice != nullptr) {
        ::CloseHandle(nullDevice);
    }
    lineSource = fromChild.reading;
    if (isStarted == FALSE) {
        ::CloseHandle(toChild.writing);
        ::CloseHandle(lineSource);
        throw SystemError(error, "a process of this program cannot be started");
    }
    process = started.hProcess;
    job = MakeJob();
    ::AssignProcessToJobObject(job, process);
    ::ResumeThread(started.hThread);
    ::CloseHandle(started.hThread);
    reader = std::thread([this] { ReadLines(); });
    WriteAll(toChild.writing, input);
    ::CloseHandle(toChild.writing);
}

ChildProcess::~ChildProcess() {
    if (!WaitForExit(std::chrono::milliseconds(0))) {
        Terminate();
    }
    reader.join();
    ::CloseHandle(lineSource);
    ::CloseHandle(process);
    ::CloseHandle(job);
}

ChildProcess::Read ChildProcess::NextLine(std::chrono::milliseconds limit, std::string& line) {
    std::unique_lock guard(mutex);
    if (!changed.wait_for(guard, limit, [this] { return hasEnded || !lines.empty(); })) {
        return Read::Timeout;
    }
    if (lines.empty()) {
        return Read::End;
    }
    line = std::move(lines.front());
    lines.pop_front();
    return Read::Line;
}

std::optional<uint32_t> ChildProcess::WaitForExit(std::chrono::milliseconds limit) const {
    if (::WaitForSingleObject(process, static_cast<DWORD>(limit.count())) != WAIT_OBJECT_0) {
        return std::nullopt;
    }
    DWORD status = 0;
    ::GetExitCodeProcess(process, &status);
    return status;
}

void ChildProcess::Terminate() const {
    ::TerminateProcess(process, 1);
    ::WaitForSingleObject(process, INFINITE);
}

void ChildProcess::ReadLines() {
    std::string text;
    char part[4096];
    DWORD size = 0;
    while (::ReadFile(lineSource, part, sizeof part, &size, nullptr) != FALSE && size != 0) {
        text.append(part, size);
        for (size_t end = text.find('\n'); end != std::string::npos; end = text.find('\n')) {
            const std::lock_guard guard(mutex);
            lines.push_back(text.substr(0, end));
            text.erase(0, end + 1);
            changed.notify_all();
        }
    }
    const std::lock_guard guard(mutex);
    hasEnded = true;
    changed.notify_all();
}

}  // namespace tool
