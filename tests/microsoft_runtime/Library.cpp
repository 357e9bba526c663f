// Further functions that libc++ has in its library and not in its headers: comparing types, the counts of shared
// pointers, sizes of hash tables, clocks.
#include <string.h>
#include <windows.h>

#include <chrono>
#include <memory>
#include <typeinfo>
#include <unordered_map>

namespace std {

int type_info::__compare(const type_info& other) const noexcept {
    return strcmp(__data.__decorated_name, other.__data.__decorated_name);
}

inline namespace __1 {

__shared_count::~__shared_count() = default;
__shared_weak_count::~__shared_weak_count() = default;

void __shared_weak_count::__release_weak() noexcept {
    if (__libcpp_atomic_refcount_decrement(__shared_weak_owners_) == -1) {
        __on_zero_shared_weak();
    }
}

const void* __shared_weak_count::__get_deleter(const type_info& /*type*/) const noexcept {
    return nullptr;
}

// One more owner, if there is one at all: the count begins with 0.
__shared_weak_count* __shared_weak_count::lock() noexcept {
    long count = __atomic_load_n(&__shared_owners_, __ATOMIC_SEQ_CST);
    while (count != -1) {
        if (__atomic_compare_exchange_n(&__shared_owners_, &count, count + 1, false, __ATOMIC_SEQ_CST,
                                        __ATOMIC_SEQ_CST)) {
            return this;
        }
    }
    return nullptr;
}

size_t __next_prime(size_t least) {
    for (size_t number = least < 2 ? 2 : least;; ++number) {
        size_t divisor = 2;
        while (divisor * divisor <= number && number % divisor != 0) {
            ++divisor;
        }
        if (divisor * divisor > number) {
            return number;
        }
    }
}

namespace chrono {

steady_clock::time_point steady_clock::now() noexcept {
    LARGE_INTEGER count;
    LARGE_INTEGER frequency;
    QueryPerformanceCounter(&count);
    QueryPerformanceFrequency(&frequency);
    const nanoseconds::rep whole = count.QuadPart / frequency.QuadPart;
    const nanoseconds::rep part = count.QuadPart % frequency.QuadPart;
    return time_point(nanoseconds(whole * nano::den + part * nano::den / frequency.QuadPart));
}

// Windows counts tenths of a microsecond since 1601.
system_clock::time_point system_clock::now() noexcept {
    constexpr long long unixEpoch = 116444736000000000;
    FILETIME time;
    GetSystemTimeAsFileTime(&time);
    const long long ticks = static_cast<long long>(time.dwHighDateTime) << 32 | time.dwLowDateTime;
    return time_point(microseconds((ticks - unixEpoch) / 10));
}

}  // namespace chrono

}  // namespace __1

}  // namespace std
