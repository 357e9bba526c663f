#include "support/LackingExport.h"

#include <fstream>
#include <stdexcept>

namespace {

std::string ReadFile(const std::filesystem::path& path) {
    std::string content(std::filesystem::file_size(path), '\0');
    std::ifstream file(path, std::ios::binary);
    if (!file.read(content.data(), static_cast<std::streamsize>(content.size()))) {
        throw std::runtime_error("cannot be read: " + path.string());
    }
    return content;
}

void WriteFile(const std::filesystem::path& path, const std::string& content) {
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    if (!file.write(content.data(), static_cast<std::streamsize>(content.size())).flush()) {
        throw std::runtime_error("cannot be written: " + path.string());
    }
}

std::string InItsTable(const std::string& name) {
    return std::string(1, '\0') + name + std::string(1, '\0');
}

// The content with another name in the place of `function`; empty when it does not have that name. Tables of exports
// are sorted: the new name is the next smaller one, so that the order stays.
std::string WithoutName(std::string content, const std::string& function) {
    const std::string name = InItsTable(function);
    std::string smaller = function;
    --smaller.back();
    if (content.find(name) == std::string::npos || content.find(InItsTable(smaller)) != std::string::npos) {
        return {};
    }
    for (size_t place = content.find(name); place != std::string::npos; place = content.find(name, place)) {
        content.replace(place, name.size(), InItsTable(smaller));
    }
    return content;
}

}  // namespace

LackingExport::LackingExport(const std::vector<std::filesystem::path>& folders, const std::string& function) {
    for (const auto& folder : folders) {
        const size_t before = changes.size();
        for (const char* library : {"ny_client.dll", "ny_variant.dll", "ny_msgbus.dll", "ny_logger.dll"}) {
            const std::string content = ReadFile(folder / library);
            if (const std::string changed = WithoutName(content, function); !changed.empty()) {
                WriteFile(folder / library, changed);
                changes.push_back({folder / library, content});
            }
        }
        if (changes.size() == before) {
            throw std::runtime_error("cannot be taken away from the agent's libraries: " + function);
        }
    }
}

LackingExport::~LackingExport() {
    for (const Change& change : changes) {
        WriteFile(change.file, change.original);
    }
}
