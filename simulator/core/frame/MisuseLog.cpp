#include "simulator/core/frame/MisuseLog.h"

#include <new>

namespace simulator {

void MisuseLog::Add(std::string_view function, std::string_view description) noexcept {
    const std::lock_guard lock(mutex);
    ++count;
    try {
        last = texts.emplace_back(std::string(function).append(": ").append(description)).c_str();
    } catch (const std::bad_alloc&) {
        last = "no memory for the text of the last misuse";
    }
}

size_t MisuseLog::Count() const {
    const std::lock_guard lock(mutex);
    return count;
}

const char* MisuseLog::Last() const {
    const std::lock_guard lock(mutex);
    return last;
}

void MisuseLog::Clear() {
    const std::lock_guard lock(mutex);
    count = 0;
    last = "";
}

}  // namespace simulator
