// Threads, mutexes and condition variables of libc++, on Windows' own.
#include <windows.h>

#include <condition_variable>
#include <mutex>
#include <stdexcept>
#include <thread>

namespace {

SRWLOCK* LockOf(void** mutex) {
    return reinterpret_cast<SRWLOCK*>(mutex);
}

CONDITION_VARIABLE* ConditionOf(void** condition) {
    return reinterpret_cast<CONDITION_VARIABLE*>(condition);
}

// Sleeps at most so long; the mutex is the caller's before and after.
void Sleep(void** condition, void** mutex, DWORD milliseconds) {
    SleepConditionVariableSRW(ConditionOf(condition), LockOf(mutex), milliseconds, 0);
}

struct Beginning {
    void* (*function)(void*);
    void* argument;
};

DWORD WINAPI RunThread(void* memory) {
    const Beginning beginning = *static_cast<Beginning*>(memory);
    delete static_cast<Beginning*>(memory);
    beginning.function(beginning.argument);
    return 0;
}

}  // namespace

namespace std {

inline namespace __1 {

// libc++'s own is a std::system_error, whose categories are not in this runtime.
void __throw_system_error(int /*code*/, const char* what) {
    throw runtime_error(what);
}

void mutex::lock() {
    AcquireSRWLockExclusive(LockOf(&__m_));
}

bool mutex::try_lock() noexcept {
    return TryAcquireSRWLockExclusive(LockOf(&__m_)) != 0;
}

void mutex::unlock() noexcept {
    ReleaseSRWLockExclusive(LockOf(&__m_));
}

void condition_variable::notify_one() noexcept {
    WakeConditionVariable(ConditionOf(&__cv_));
}

void condition_variable::notify_all() noexcept {
    WakeAllConditionVariable(ConditionOf(&__cv_));
}

void condition_variable::wait(unique_lock<mutex>& lock) noexcept {
    Sleep(&__cv_, lock.mutex()->native_handle(), INFINITE);
}

void condition_variable::__do_timed_wait(unique_lock<mutex>& lock,
                                         chrono::time_point<chrono::system_clock, chrono::nanoseconds> end) noexcept {
    const auto left = chrono::ceil<chrono::milliseconds>(end - chrono::system_clock::now()).count();
    // A wait may end early: its caller looks again.
    constexpr long long longest = 24 * 60 * 60 * 1000;
    Sleep(&__cv_, lock.mutex()->native_handle(), static_cast<DWORD>(left < 0 ? 0 : left < longest ? left : longest));
}

bool __libcpp_thread_isnull(const __libcpp_thread_t* thread) {
    return *thread == nullptr;
}

bool __libcpp_thread_id_equal(__libcpp_thread_id left, __libcpp_thread_id right) {
    return left == right;
}

bool __libcpp_thread_id_less(__libcpp_thread_id left, __libcpp_thread_id right) {
    return left < right;
}

__libcpp_thread_id __libcpp_thread_get_current_id() {
    return static_cast<__libcpp_thread_id>(GetCurrentThreadId());
}

__libcpp_thread_id __libcpp_thread_get_id(const __libcpp_thread_t* thread) {
    return static_cast<__libcpp_thread_id>(GetThreadId(*thread));
}

int __libcpp_thread_create(__libcpp_thread_t* thread, void* (*function)(void*), void* argument) {
    auto* const beginning = new Beginning{function, argument};
    *thread = CreateThread(nullptr, 0, RunThread, beginning, 0, nullptr);
    if (*thread == nullptr) {
        delete beginning;
        return static_cast<int>(GetLastError());
    }
    return 0;
}

int __libcpp_tls_create(__libcpp_tls_key* key, void(__stdcall* atExit)(void*)) {
    *key = static_cast<__libcpp_tls_key>(FlsAlloc(atExit));
    return static_cast<DWORD>(*key) == FLS_OUT_OF_INDEXES ? static_cast<int>(GetLastError()) : 0;
}

void* __libcpp_tls_get(__libcpp_tls_key key) {
    return FlsGetValue(static_cast<DWORD>(key));
}

int __libcpp_tls_set(__libcpp_tls_key key, void* value) {
    return FlsSetValue(static_cast<DWORD>(key), value) != 0 ? 0 : static_cast<int>(GetLastError());
}

// The work for futures at a thread's end. Futures are not in this runtime.
__thread_struct::__thread_struct() : __p_(nullptr) {}
__thread_struct::~__thread_struct() = default;

__thread_specific_ptr<__thread_struct>& __thread_local_data() {
    static __thread_specific_ptr<__thread_struct> data;
    return data;
}

thread::~thread() {
    if (joinable()) {
        terminate();
    }
}

void thread::join() {
    if (!joinable()) {
        __throw_system_error(ERROR_INVALID_HANDLE, "thread::join failed");
    }
    WaitForSingleObject(__t_, INFINITE);
    CloseHandle(__t_);
    __t_ = nullptr;
}

void thread::detach() {
    if (!joinable()) {
        __throw_system_error(ERROR_INVALID_HANDLE, "thread::detach failed");
    }
    CloseHandle(__t_);
    __t_ = nullptr;
}

}  // namespace __1

}  // namespace std
