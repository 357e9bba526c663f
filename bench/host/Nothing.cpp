// A library that does nothing, with as much of the C++ runtime linked into it as the bridge has: what throws and locks.
#include <mutex>
#include <stdexcept>
#include <string>

extern "C" __declspec(dllexport) size_t LengthOfText(const char* text);

extern "C" size_t LengthOfText(const char* text) {
    static std::mutex mutex;
    try {
        const std::lock_guard guard(mutex);
        if (text == nullptr) {
            throw std::invalid_argument("no text");
        }
        return std::string(text).size();
    } catch (const std::exception&) {
        return 0;
    }
}
