#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include <atomic>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

// A file for the host's log in a folder of this process's own, which is deleted at the end. The file is not made here.
class LogFile {
public:
    LogFile() { std::filesystem::create_directories(folder); }
    ~LogFile() { std::filesystem::remove_all(folder); }
    LogFile(const LogFile&) = delete;
    LogFile& operator=(const LogFile&) = delete;

    const std::filesystem::path folder =
        std::filesystem::temp_directory_path() /
        ("log-" + std::to_string(::GetCurrentProcessId()) + "-" + std::to_string(++count));
    const std::filesystem::path path = folder / "host.log";

    bool Exists() const { return std::filesystem::exists(path); }
    void Delete() const { std::filesystem::remove(path); }

    // All that stands in the file.
    std::string Text() const {
        std::ifstream file(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    // Its lines, each of which ends as it should.
    std::vector<std::string> Lines() const {
        std::vector<std::string> lines;
        const std::string text = Text();
        for (size_t begin = 0; begin < text.size();) {
            const size_t end = text.find("\r\n", begin);
            EXPECT_NE(end, std::string::npos) << "the last line has no end";
            lines.push_back(text.substr(begin, end - begin));
            begin = end == std::string::npos ? text.size() : end + 2;
        }
        return lines;
    }

private:
    static inline std::atomic<unsigned> count = 0;
};

// The environment variable that names the host's log file has this value while the object lives; null for none.
class LogFileVariable {
public:
    explicit LogFileVariable(const wchar_t* value) { ::SetEnvironmentVariableW(L"LOGLIB_FILE", value); }
    ~LogFileVariable() { ::SetEnvironmentVariableW(L"LOGLIB_FILE", nullptr); }
    LogFileVariable(const LogFileVariable&) = delete;
    LogFileVariable& operator=(const LogFileVariable&) = delete;
};
