#pragma once

#include <windows.h>

#include <cstddef>
#include <string>
#include <string_view>

#include "checking/StateLock.h"

namespace checking {

// A file of lines with a greatest size, in the system's memory of the file: a line that was added is in the file even
// when the process crashes with the next instruction. When it is full, the newest line takes the place of the oldest
// ones.
//
// Until Finish the file is a JSON array without its end, which viewers of the Trace Event format read.
class TraceFile {
public:
    // Makes the file, in the place of one that is there. `limit` is its greatest size in bytes. Without the file
    // nothing is recorded.
    TraceFile(const wchar_t* path, size_t limit) noexcept;
    ~TraceFile();
    TraceFile(const TraceFile&) = delete;
    TraceFile& operator=(const TraceFile&) = delete;

    bool IsThere() const noexcept { return memory != nullptr; }
    // `line` ends with a comma and a line end.
    void Add(std::string_view line) noexcept;
    // Writes the end of the array, with `last` as its last element, and makes the file as long as what is in it.
    // Nothing is recorded afterwards.
    void Finish(std::string_view last) noexcept;

private:
    static constexpr size_t roomForEnd = 256;

    void BlankUntilNextLine() noexcept REQUIRES(lock);

    StateLock lock;
    HANDLE file = INVALID_HANDLE_VALUE;
    char* memory = nullptr;
    size_t size = 0;                      // of the lines; behind them is room for the end
    size_t next GUARDED_BY(lock) = 0;     // where the next line goes
    size_t written GUARDED_BY(lock) = 0;  // the end of the last line in the order of the file
};

}  // namespace checking
