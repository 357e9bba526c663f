#include "FolderScan.h"

#include <windows.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <system_error>

namespace fs = std::filesystem;

namespace {

fs::path ProgramFolder() {
    wchar_t program[MAX_PATH] = {};
    ::GetModuleFileNameW(nullptr, program, MAX_PATH);
    return fs::path(program).parent_path();
}

// Patterns are a star and an ending each.
bool IsWanted(const fs::path& file, const std::wstring& patterns) {
    const std::wstring name = file.filename().wstring();
    for (size_t begin = 0; begin < patterns.size();) {
        const size_t end = std::min(patterns.find(L';', begin), patterns.size());
        const std::wstring pattern = patterns.substr(begin, end - begin);
        if (!pattern.empty() && pattern[0] == L'*' && name.ends_with(pattern.substr(1))) {
            return true;
        }
        begin = end + 1;
    }
    return false;
}

void ReadInto(ScanResult& result, const fs::path& file, const std::string& signature) {
    std::ifstream stream(file, std::ios::binary);
    const std::string content((std::istreambuf_iterator<char>(stream)), std::istreambuf_iterator<char>());
    ++result.files;
    result.bytes += content.size();
    if (!signature.empty() && content.find(signature) != std::string::npos) {
        ++result.findings;
    }
}

// Returns early when the scan is to stop. It asks the token again and again: see vsmsgbus::TaskRun::StopToken.
void WaitForNextFile(int32_t filesPerSecond, const std::stop_token& stop) {
    using std::chrono::milliseconds;
    using std::chrono::steady_clock;
    const auto end = steady_clock::now() + milliseconds(filesPerSecond > 0 ? 1000 / filesPerSecond : 0);
    for (auto now = steady_clock::now(); now < end && !stop.stop_requested(); now = steady_clock::now()) {
        constexpr DWORD longest = 20;
        ::Sleep(std::min(longest, static_cast<DWORD>(std::chrono::ceil<milliseconds>(end - now).count())));
    }
}

}  // namespace

ScanResult ScanFolder(const ScanOrder& order, const std::stop_token& stop, const std::function<void()>& onFile) {
    ScanResult result;
    std::error_code error;
    for (const fs::directory_entry& entry : fs::directory_iterator(ProgramFolder() / order.folder, error)) {
        if (!entry.is_regular_file(error) || !IsWanted(entry.path(), order.patterns)) {
            continue;
        }
        if (result.files == order.maximumFiles) {
            break;
        }
        if (result.files != 0) {
            WaitForNextFile(order.filesPerSecond, stop);
        }
        if (stop.stop_requested()) {
            return result;
        }
        ReadInto(result, entry.path(), order.signature);
        onFile();
    }
    result.isComplete = true;
    return result;
}
