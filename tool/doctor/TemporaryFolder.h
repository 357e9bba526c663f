#pragma once

#include <filesystem>

namespace tool::doctor {

// A folder of this process's own, deleted with all that is in it at the end.
class TemporaryFolder {
public:
    // Throws std::filesystem::filesystem_error.
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::filesystem::path& Path() const { return path; }

private:
    std::filesystem::path path;
};

}  // namespace tool::doctor
