#pragma once

#include <array>
#include <string>

#include "base/Mutex.h"

namespace bridge {

// Where lines of the log are written to. Any thread.
class LogDestination {
public:
    // The longest path, its terminating zero included.
    static constexpr size_t pathCapacity = 32767;

    // See LogUtils::LogManager::SetFile.
    bool Choose(const wchar_t* path);

    // Writes the line, its line end included, to the file, or else to the debugger's output. Throws std::bad_alloc and
    // what Utf8FromWide throws.
    void Write(const std::wstring& line) const;

private:
    // Empty for the debugger's output.
    std::wstring File() const;
    // One write at the file's end, so that lines of several processes do not mix; and one thread at a time, because not
    // every system keeps lines of one process apart there.
    bool Append(const std::wstring& path, const std::string& bytes) const;

    mutable Mutex writing;
    mutable Mutex mutex;
    bool isChosen GUARDED_BY(mutex) = false;
    // Has no memory of its own, so that nothing of it is left to be freed.
    std::array<wchar_t, pathCapacity> chosen GUARDED_BY(mutex){};
};

}  // namespace bridge
