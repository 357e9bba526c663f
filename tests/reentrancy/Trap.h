#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <string_view>
#include <utility>

// Waits in all callbacks of a module for the one that it is set for, and there does what it was set to do, once.
class Trap {
public:
    // For callbacks that write a line, `line` is a part of the line's text; the others have none.
    void Set(std::string_view callbackName, std::wstring_view linePart, std::function<void()> whatToDo) {
        const std::lock_guard guard(lock);
        callback = callbackName;
        line = linePart;
        action = std::move(whatToDo);
        hasSprung = false;
        isOver = false;
    }
    void Clear() { Set({}, {}, {}); }

    bool IsSetFor(std::string_view callbackName) const {
        const std::lock_guard guard(lock);
        return callback == callbackName;
    }
    bool HasSprung() const {
        const std::lock_guard guard(lock);
        return hasSprung;
    }

    // Waits until what there was to do has been done.
    bool WaitUntilOver(std::chrono::milliseconds limit) const {
        std::unique_lock guard(lock);
        return over.wait_for(guard, limit, [this] { return isOver; });
    }

    // How often the module was called.
    uint64_t Calls() const {
        const std::lock_guard guard(lock);
        return calls;
    }

    // The module is in that callback; the calling thread does what there is to do.
    void Enter(std::string_view callbackName) {
        Spring([&] { return callback == callbackName; });
    }
    // The same for a line that is written to the sink whose callbacks have that name's beginning.
    void EnterWrite(std::string_view nameBegin, std::wstring_view text) {
        Spring([&] { return callback.starts_with(nameBegin) && text.find(line) != std::wstring_view::npos; });
    }

private:
    template <class Condition>
    void Spring(const Condition& isMeant) {
        std::function<void()> now;
        {
            const std::lock_guard guard(lock);
            ++calls;
            if (action == nullptr || !isMeant()) {
                return;
            }
            now = std::exchange(action, nullptr);
            hasSprung = true;
        }
        now();
        const std::lock_guard guard(lock);
        isOver = true;
        over.notify_all();
    }

    mutable std::mutex lock;
    mutable std::condition_variable over;
    std::string_view callback;
    std::wstring_view line;
    std::function<void()> action;
    bool hasSprung = false;
    bool isOver = false;
    uint64_t calls = 0;
};
