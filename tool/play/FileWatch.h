#pragma once

#include <filesystem>
#include <vector>

namespace tool::play {

// Waits until files change.
class FileWatch {
public:
    explicit FileWatch(std::vector<std::filesystem::path> watchedFiles);

    // Returns when one of the files is another one than at the beginning, or at the last return, and nobody writes to
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
