#include "tool/play/FileWatch.h"

#include <windows.h>

#include <algorithm>
#include <chrono>
#include <system_error>
#include <thread>

namespace tool::play {

namespace {

// How often is looked: a file system need not tell of changes.
constexpr std::chrono::milliseconds pause{200};

}  // namespace

FileWatch::FileWatch(std::vector<std::filesystem::path> watchedFiles) : files(std::move(watchedFiles)), times(Look()) {}

void FileWatch::WaitForChange() {
    for (;;) {
        std::this_thread::sleep_for(pause);
        Times now = Look();
        if (now != times && CanAllBeRead()) {
            times = std::move(now);
            return;
        }
    }
}

// A file that is not there has no time.
FileWatch::Times FileWatch::Look() const {
    Times found;
    for (const auto& file : files) {
        std::error_code error;
        const auto time = std::filesystem::last_write_time(file, error);
        found.push_back(error ? std::filesystem::file_time_type::min() : time);
    }
    return found;
}

bool FileWatch::CanAllBeRead() const {
    return std::all_of(files.begin(), files.end(), [](const std::filesystem::path& file) {
        HANDLE const handle = ::CreateFileW(file.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                            FILE_ATTRIBUTE_NORMAL, nullptr);
        if (handle != INVALID_HANDLE_VALUE) {
            ::CloseHandle(handle);
        }
        return handle != INVALID_HANDLE_VALUE;
    });
}

}  // namespace tool::play
