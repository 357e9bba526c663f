#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace tool::play {

// The file to which the checking bridge of a player's process writes, in the folder for temporary files. Deleted at the
// end.
class FindingsFile {
public:
    FindingsFile();
    ~FindingsFile();
    FindingsFile(const FindingsFile&) = delete;
    FindingsFile& operator=(const FindingsFile&) = delete;

    const std::filesystem::path& Path() const noexcept { return path; }
    // Its lines: findings and notes.
    std::vector<std::string> Read() const;

private:
    std::filesystem::path path;
};

}  // namespace tool::play
