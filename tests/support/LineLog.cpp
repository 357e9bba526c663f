#include "support/LineLog.h"

#include <windows.h>

#include <algorithm>
#include <utility>

void LineLog::Add(std::string line) {
    const std::lock_guard guard(mutex);
    lines.push_back(std::move(line));
    added.notify_all();
}

std::vector<std::string> LineLog::Lines() const {
    const std::lock_guard guard(mutex);
    return lines;
}

std::vector<std::string> LineLog::Take() {
    const std::lock_guard guard(mutex);
    return std::exchange(lines, {});
}

bool LineLog::WaitFor(std::string_view line, size_t count, std::chrono::milliseconds limit) const {
    std::unique_lock guard(mutex);
    return added.wait_for(guard, limit,
                          [&] { return static_cast<size_t>(std::count(lines.begin(), lines.end(), line)) >= count; });
}

bool LineLog::WaitForSize(size_t size, std::chrono::milliseconds limit) const {
    std::unique_lock guard(mutex);
    return added.wait_for(guard, limit, [&] { return lines.size() >= size; });
}

std::string Narrow(std::wstring_view wide) {
    if (wide.empty()) {
        return {};
    }
    const int length = static_cast<int>(wide.size());
    std::string narrow(
        static_cast<size_t>(::WideCharToMultiByte(CP_UTF8, 0, wide.data(), length, nullptr, 0, nullptr, nullptr)),
        '\0');
    ::WideCharToMultiByte(CP_UTF8, 0, wide.data(), length, narrow.data(), static_cast<int>(narrow.size()), nullptr,
                          nullptr);
    return narrow;
}
