#include "tool/CommandLine.h"

#include <windows.h>

#include <shellapi.h>

#include <filesystem>
#include <memory>

namespace tool {

std::vector<std::string> CommandLine() {
    int count = 0;
    const std::unique_ptr<LPWSTR, decltype(&::LocalFree)> words(::CommandLineToArgvW(::GetCommandLineW(), &count),
                                                                &::LocalFree);
    std::vector<std::string> all;
    for (int i = 0; i < count; ++i) {
        const std::u8string word = std::filesystem::path(words.get()[i]).u8string();
        all.emplace_back(word.begin(), word.end());
    }
    return all;
}

}  // namespace tool
