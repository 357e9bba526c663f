#include "checking/trace/TraceFile.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace checking {

namespace {

constexpr std::string_view begin = "[\n";

}  // namespace

TraceFile::TraceFile(const wchar_t* path, size_t limit) noexcept {
    constexpr size_t least = 4096;
    const size_t whole = std::max(limit, least);
    file = ::CreateFileW(path, GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_DELETE, nullptr,
                         CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        return;
    }
    HANDLE const mapping = ::CreateFileMappingW(file, nullptr, PAGE_READWRITE, static_cast<DWORD>(whole >> 32U),
                                                static_cast<DWORD>(whole), nullptr);
    if (mapping == nullptr) {
        return;
    }
    memory = static_cast<char*>(::MapViewOfFile(mapping, FILE_MAP_WRITE, 0, 0, whole));
    ::CloseHandle(mapping);
    if (memory != nullptr) {
        size = whole - roomForEnd;
        std::memset(memory, ' ', whole);
        std::memcpy(memory, begin.data(), begin.size());
        next = written = begin.size();
    }
}

TraceFile::~TraceFile() {
    if (memory != nullptr) {
        ::UnmapViewOfFile(memory);
    }
    if (file != INVALID_HANDLE_VALUE) {
        ::CloseHandle(file);
    }
}

void TraceFile::Add(std::string_view line) noexcept {
    const Guard guard(lock);
    if (memory == nullptr || line.size() > size - begin.size()) {
        return;
    }
    if (next + line.size() > size) {
        std::memset(memory + next, ' ', size - next);
        written = next;
        next = begin.size();
    }
    std::memcpy(memory + next, line.data(), line.size());
    next += line.size();
    if (next < written) {
        BlankUntilNextLine();
    } else {
        written = next;
    }
}

// Blanks the rest of the old line that the newest one has overwritten in part.
void TraceFile::BlankUntilNextLine() noexcept {
    const auto* const rest = static_cast<const char*>(std::memchr(memory + next, '\n', written - next));
    const size_t blankEnd = rest != nullptr ? static_cast<size_t>(rest - memory) : written;
    std::memset(memory + next, ' ', blankEnd - next);
}

void TraceFile::Finish(std::string_view last) noexcept {
    const Guard guard(lock);
    if (memory == nullptr) {
        return;
    }
    const size_t lastSize = std::min(last.size(), roomForEnd - 3);
    std::memcpy(memory + written, last.data(), lastSize);
    std::memcpy(memory + written + lastSize, "\n]\n", 3);
    ::UnmapViewOfFile(std::exchange(memory, nullptr));
    ::SetFilePointer(file, static_cast<LONG>(written + lastSize + 3), nullptr, FILE_BEGIN);
    ::SetEndOfFile(file);
}

}  // namespace checking
