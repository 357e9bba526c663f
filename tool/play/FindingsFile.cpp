#include "tool/play/FindingsFile.h"

#include <windows.h>

#include <atomic>
#include <fstream>
#include <system_error>

namespace tool::play {

FindingsFile::FindingsFile() {
    static std::atomic<unsigned> count{0};
    path = std::filesystem::temp_directory_path() / (L"vsmsgbus-findings-" + std::to_wstring(::GetCurrentProcessId()) +
                                                     L"-" + std::to_wstring(++count) + L".txt");
    // One of an earlier process with this id may have been left.
    std::error_code ignored;
    std::filesystem::remove(path, ignored);
}

FindingsFile::~FindingsFile() {
    std::error_code ignored;
    std::filesystem::remove(path, ignored);
}

std::vector<std::string> FindingsFile::Read() const {
    std::vector<std::string> lines;
    std::ifstream stream(path);
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}

}  // namespace tool::play
