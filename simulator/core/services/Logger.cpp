#include "simulator/core/services/Logger.h"

#include <utility>

namespace simulator {

void Logger::Add(std::string line) {
    const std::lock_guard lock(mutex);
    lines.push_back(std::move(line));
}

size_t Logger::Size() const {
    const std::lock_guard lock(mutex);
    return lines.size();
}

const char* Logger::At(size_t index) const {
    const std::lock_guard lock(mutex);
    return index < lines.size() ? lines[index].c_str() : nullptr;
}

}  // namespace simulator
