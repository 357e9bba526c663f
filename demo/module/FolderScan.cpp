#include "FolderScan.h"

#include <windows.h>

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

}  // namespace

ScanResult FolderScan::Run(const std::function<void(const ScanResult&)>& onFile) {
    ScanResult result;
    std::error_code error;
    for (const fs::directory_entry& entry : fs::directory_iterator(ProgramFolder() / order.folder, error)) {
        if (!entry.is_regular_file(error) || !IsWanted(entry.path(), order.patterns)) {
            continue;
        }
        if (result.files == order.maximumFiles) {
            break;
        }
        if (result.files != 0 && !WaitForNextFile()) {
            return result;
        }
        ReadInto(result, entry.path(), order.signature);
        onFile(result);
    }
    result.isComplete = true;
    return result;
}

void FolderScan::Stop() {
    const std::lock_guard guard(mutex);
    isStopped = true;
    stopped.notify_all();
}

bool FolderScan::WaitForNextFile() {
    const std::chrono::milliseconds pause(order.filesPerSecond > 0 ? 1000 / order.filesPerSecond : 0);
    std::unique_lock guard(mutex);
    return !stopped.wait_for(guard, pause, [this] { return isStopped; });
}
