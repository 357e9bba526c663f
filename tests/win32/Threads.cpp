#include <csetjmp>
#include <memory>
#include <thread>
#include <utility>

#include "Callers.h"
#include "Waitable.h"
#include "win32/libraries.h"
#include "win32/threads.h"

namespace win32 {

namespace {

constexpr DWORD threadIdSpacing = 4;
std::atomic<DWORD> lastThreadId = 0;
thread_local DWORD currentThreadId = 0;

DWORD NewThreadId() {
    return lastThreadId.fetch_add(threadIdSpacing, std::memory_order_relaxed) + threadIdSpacing;
}

class Thread final : public Waitable {
public:
    Thread(LPTHREAD_START_ROUTINE startRoutine, LPVOID startParameter)
        : Waitable(true, false), start(startRoutine), parameter(startParameter) {}

    const LPTHREAD_START_ROUTINE start;
    const LPVOID parameter;
    const DWORD id = NewThreadId();
};

// The way out of a thread from anywhere in it.
struct ThreadExit {
    std::jmp_buf place;
    HMODULE library = nullptr;
};
thread_local ThreadExit* currentExit = nullptr;

// Returns when the start routine does, or when it leaves its thread.
void RunStartRoutine(const Thread& thread, ThreadExit& exit) {
    currentExit = &exit;
    if (setjmp(exit.place) == 0) {
        thread.start(thread.parameter);
    }
}

void RunThread(Thread& thread) {
    currentThreadId = thread.id;
    ThreadExit exit;
    RunStartRoutine(thread, exit);
    currentExit = nullptr;
    if (exit.library != nullptr) {
        FreeLibrary(exit.library);
    }
    thread.Signal();
}

void* RunDetached(void* parameter) {
    const std::unique_ptr<std::shared_ptr<Thread>> thread(static_cast<std::shared_ptr<Thread>*>(parameter));
    RunThread(**thread);
    return nullptr;
}

// Made detached: glibc's pthread_detach may meet the thread's end, and was then seen to answer EINVAL for another
// thread that is alive. False when the system has no thread to give.
bool StartDetached(std::shared_ptr<Thread> thread) {
    auto parameter = std::make_unique<std::shared_ptr<Thread>>(std::move(thread));
    pthread_attr_t attributes;
    ::pthread_attr_init(&attributes);
    ::pthread_attr_setdetachstate(&attributes, PTHREAD_CREATE_DETACHED);
    pthread_t started{};
    const bool isStarted = ::pthread_create(&started, &attributes, RunDetached, parameter.get()) == 0;
    ::pthread_attr_destroy(&attributes);
    if (isStarted) {
        static_cast<void>(parameter.release());
    }
    return isStarted;
}

}  // namespace

}  // namespace win32

HANDLE CreateThread(LPSECURITY_ATTRIBUTES /*security*/, size_t /*stackSize*/, LPTHREAD_START_ROUTINE start,
                    LPVOID parameter, DWORD flags, LPDWORD threadId) {
    win32::Support(flags == 0, "flags of threads");
    return win32::AnswerOr<HANDLE>(nullptr, "CreateThread", [&] {
        auto thread = std::make_shared<win32::Thread>(start, parameter);
        const DWORD id = thread->id;
        const HANDLE handle = win32::OpenHandle(thread);
        // The object goes over to the thread: letting go of it after the thread did would order the two.
        if (!win32::StartDetached(std::move(thread))) {
            win32::TakeHandle(handle);
            throw win32::Failure{ERROR_NOT_ENOUGH_MEMORY};
        }
        if (threadId != nullptr) {
            *threadId = id;
        }
        return handle;
    });
}

// The library is freed and the thread ended from outside of the library's code, once nothing of it runs any more.
void FreeLibraryAndExitThread(HMODULE library, DWORD /*exitCode*/) {
    win32::Support(win32::currentExit != nullptr, "leaving a thread that CreateThread did not make");
    win32::currentExit->library = library;
    std::longjmp(win32::currentExit->place, 1);
}

DWORD GetCurrentThreadId() {
    if (win32::currentThreadId == 0) {
        win32::currentThreadId = win32::NewThreadId();
    }
    return win32::currentThreadId;
}

DWORD TlsAlloc() {
    return win32::AnswerOr<DWORD>(TLS_OUT_OF_INDEXES, "TlsAlloc", [] {
        pthread_key_t key = 0;
        if (::pthread_key_create(&key, nullptr) != 0) {
            throw win32::Failure{ERROR_NOT_ENOUGH_MEMORY};
        }
        return key;
    });
}

BOOL TlsFree(DWORD index) {
    if (::pthread_key_delete(index) != 0) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return FALSE;
    }
    return TRUE;
}

LPVOID TlsGetValue(DWORD index) {
    SetLastError(ERROR_SUCCESS);
    return ::pthread_getspecific(index);
}

BOOL TlsSetValue(DWORD index, LPVOID value) {
    const auto set = [&] {
        win32::Support(::pthread_setspecific(index, value) == 0, "an index that was not given");
        return TRUE;
    };
    return ::pthread_getspecific(index) != nullptr ? set() : win32::AnswerOr(FALSE, "TlsSetValue", set);
}

void Sleep(DWORD milliseconds) {
    std::this_thread::sleep_for(std::chrono::milliseconds(win32::LimitedWait(milliseconds)));
}
