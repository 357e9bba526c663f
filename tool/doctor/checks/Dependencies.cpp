#include "tool/doctor/checks/Dependencies.h"

#include <fmt/format.h>
#include <windows.h>

#include <algorithm>
#include <cctype>
#include <set>

#include "checking/Texts.h"
#include "tool/doctor/SystemTexts.h"
#include "tool/pe/PeFile.h"

namespace tool::doctor {

namespace {

namespace fs = std::filesystem;

std::string InLowerCase(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

// Whether the name stands for no file: the system maps such names to its own libraries.
bool IsApiSet(const std::string& name) {
    return name.starts_with("api-ms-") || name.starts_with("ext-ms-");
}

std::vector<fs::path> SystemFolders() {
    wchar_t folder[MAX_PATH] = {};
    std::vector<fs::path> folders;
    if (::GetSystemDirectoryW(folder, MAX_PATH) != 0) {
        folders.emplace_back(folder);
    }
    if (::GetWindowsDirectoryW(folder, MAX_PATH) != 0) {
        folders.emplace_back(folder);
    }
    std::wstring path(::GetEnvironmentVariableW(L"PATH", nullptr, 0), L'\0');
    path.resize(::GetEnvironmentVariableW(L"PATH", path.data(), static_cast<DWORD>(path.size())));
    for (size_t begin = 0; begin < path.size();) {
        const size_t end = std::min(path.find(L';', begin), path.size());
        folders.emplace_back(path.substr(begin, end - begin));
        begin = end + 1;
    }
    return folders;
}

std::optional<fs::path> FindIn(const std::vector<fs::path>& folders, const std::string& name) {
    for (const fs::path& folder : folders) {
        std::error_code error;
        if (fs::path file = folder / PathOf(name); fs::is_regular_file(file, error)) {
            return file;
        }
    }
    return std::nullopt;
}

class Search {
public:
    explicit Search(const std::vector<fs::path>& ownFolders) : folders(ownFolders) {}

    std::optional<MissingDependency> LookInto(const fs::path& file) {
        for (const PeImport& import : PeFile(file).Imports()) {
            const std::string name = InLowerCase(import.library);
            if (import.isDelayed || IsApiSet(name) || !seen.insert(name).second) {
                continue;
            }
            if (auto missing = LookFor(import.library)) {
                return missing;
            }
        }
        return std::nullopt;
    }

private:
    std::optional<MissingDependency> LookFor(const std::string& library) {
        if (const auto own = FindIn(folders, library)) {
            if (const PeFile image(*own); image.Machine() != IMAGE_FILE_MACHINE_AMD64) {
                return MissingDependency{library, "is " + (image.IsImage() ? image.MachineName() : "no library")};
            }
            return LookInto(*own);
        }
        if (FindIn(systemFolders, library)) {
            return std::nullopt;
        }
        return MissingDependency{library, "is found nowhere"};
    }

    const std::vector<fs::path>& folders;
    const std::vector<fs::path> systemFolders = SystemFolders();
    std::set<std::string> seen;
};

}  // namespace

std::optional<MissingDependency> FindMissingDependency(const fs::path& file, const std::vector<fs::path>& folders) {
    return Search(folders).LookInto(file);
}

}  // namespace tool::doctor
