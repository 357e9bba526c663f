#pragma once

#include <windows.h>

#include <string>

// Runs a test of this program in a process of its own, with this one's environment, and returns its exit code; -1 when
// it could not be started. A test that is disabled runs as well.
inline int RunInOwnProcess(const std::string& test) {
    char program[MAX_PATH] = {};
    ::GetModuleFileNameA(nullptr, program, MAX_PATH);
    std::string command = "\"" + std::string(program) + "\" --gtest_also_run_disabled_tests --gtest_filter=" + test;
    // Without these variables: in one shard of several the process might run no test.
    ::SetEnvironmentVariableA("GTEST_TOTAL_SHARDS", nullptr);
    ::SetEnvironmentVariableA("GTEST_SHARD_INDEX", nullptr);
    STARTUPINFOA startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process{};
    if (::CreateProcessA(nullptr, command.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup, &process) ==
        FALSE) {
        return -1;
    }
    DWORD code = 0;
    ::WaitForSingleObject(process.hProcess, INFINITE);
    ::GetExitCodeProcess(process.hProcess, &code);
    ::CloseHandle(process.hThread);
    ::CloseHandle(process.hProcess);
    return static_cast<int>(code);
}
