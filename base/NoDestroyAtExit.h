#pragma once

namespace bridge {

// Whether the process is ending, so that no thread but the one that ends it runs any more. The library's entry point
// sets it before static objects are destroyed.
inline bool isProcessEnding = false;

// A static object with locks or heap memory in it: destroyed when the library is unloaded, but not when the process
// ends. The other threads were then ended wherever they were, and what one of them had locked stays locked: destroying
// a condition variable, or freeing memory, could wait for it for ever.
template <class Object>
class NoDestroyAtExit {
public:
    constexpr NoDestroyAtExit() : object() {}
    ~NoDestroyAtExit() {
        if (!isProcessEnding) {
            object.~Object();
        }
    }
    NoDestroyAtExit(const NoDestroyAtExit&) = delete;
    NoDestroyAtExit& operator=(const NoDestroyAtExit&) = delete;

    Object& operator*() noexcept { return object; }
    Object* operator->() noexcept { return &object; }

private:
    union {
        Object object;
    };
};

}  // namespace bridge
