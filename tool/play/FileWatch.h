#pragma once

#include <filesystem>
#include <vector>

namespace tool::play {

// Waits until files change.
class FileWatch {
public:
    explicit FileWatch(std::vector<std::filesystem::path> watchedFiles);

    // Returns when one of the files has changed since the beginning, or since the last return, and no program writes to
    // it any more.
    void WaitForChange();

private:
    using Times = std::vector<std::filesystem::file_time_type>;
    Times Look() const;
    bool CanAllBeRead() const;

    const std::vector<std::filesystem::path> files;
    Times times;
};

}  // namespace tool::play
