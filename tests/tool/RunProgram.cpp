#include "tool/RunProgram.h"

#include <windows.h>

#include <filesystem>
#include <iostream>
#include <thread>

namespace {

class Pipe {
public:
    Pipe() {
        SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
        ::CreatePipe(&reading, &writing, &inherited, 0);
        ::SetHandleInformation(reading, HANDLE_FLAG_INHERIT, 0);
    }
    ~Pipe() { ::CloseHandle(reading); }
    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;

    HANDLE WritingEnd() const { return writing; }
    // Once the program has it: the reader is at the end when the program's is the last one.
    void CloseWritingEnd() const { ::CloseHandle(writing); }

    // Until the end.
    std::string Read() const {
        std::string text;
        char part[4096];
        DWORD size = 0;
        while (::ReadFile(reading, part, sizeof part, &size, nullptr) != FALSE && size != 0) {
            text.append(part, size);
        }
        return text;
    }

private:
    HANDLE reading = nullptr;
    HANDLE writing = nullptr;
};

std::wstring Quoted(const std::string& word) {
    const std::wstring wide = std::filesystem::path(reinterpret_cast<const char8_t*>(word.c_str())).wstring();
    return word.empty() || word.find_first_of(" \t") != std::string::npos ? L"\"" + wide + L"\"" : wide;
}

std::filesystem::path FolderOfThisProgram() {
    wchar_t program[MAX_PATH] = {};
    ::GetModuleFileNameW(nullptr, program, MAX_PATH);
    return std::filesystem::path(program).parent_path();
}

}  // namespace

ProgramRun RunVsMsgbus(const std::vector<std::string>& words) {
    constexpr DWORD limit = 120'000;
    std::wstring command = L"\"" + (FolderOfThisProgram() / "vsmsgbus.exe").wstring() + L"\"";
    for (const std::string& word : words) {
        command += L' ' + Quoted(word);
    }
    const Pipe output;
    const Pipe errors;
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdOutput = output.WritingEnd();
    startup.hStdError = errors.WritingEnd();
    PROCESS_INFORMATION process{};
    const BOOL isStarted =
        ::CreateProcessW(nullptr, command.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup, &process);
    output.CloseWritingEnd();
    errors.CloseWritingEnd();
    ProgramRun run;
    if (isStarted == FALSE) {
        run.errors = "it could not be started: error " + std::to_string(::GetLastError());
        return run;
    }
    std::thread readingErrors([&] { run.errors = errors.Read(); });
    std::thread readingOutput([&] { run.output = output.Read(); });
    if (::WaitForSingleObject(process.hProcess, limit) == WAIT_OBJECT_0) {
        DWORD status = 0;
        ::GetExitCodeProcess(process.hProcess, &status);
        run.status = static_cast<int>(status);
    } else {
        ::TerminateProcess(process.hProcess, 1);
    }
    readingOutput.join();
    readingErrors.join();
    ::CloseHandle(process.hThread);
    ::CloseHandle(process.hProcess);
    std::cout << run.errors;
    return run;
}
