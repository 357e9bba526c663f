#include "simulator/core/threads/AgentThread.h"

#include <windows.h>

#include <condition_variable>
#include <cstddef>
#include <memory>
#include <mutex>
#include <new>
#include <utility>

namespace simulator {

namespace {

struct ThreadStart {
    std::function<void()> work;
    HMODULE library = nullptr;
};

// How many threads have work left.
class WorkCount {
public:
    void Add() {
        const std::lock_guard lock(mutex);
        ++count;
    }
    void Remove() {
        const std::lock_guard lock(mutex);
        --count;
        changed.notify_all();
    }
    bool WaitForNone(std::chrono::milliseconds time) {
        std::unique_lock lock(mutex);
        return changed.wait_for(lock, time, [this] { return count == 0; });
    }

private:
    std::mutex mutex;
    std::condition_variable changed;
    size_t count = 0;
};

// Made when the library is loaded and never destroyed: threads may be at work when the process ends.
WorkCount& working = *new WorkCount;

// When this returns, all C++ objects of the thread are destroyed: the library may then be unloaded.
HMODULE RunWork(void* argument) {
    const std::unique_ptr<ThreadStart> start(static_cast<ThreadStart*>(argument));
    start->work();
    start->work = nullptr;
    working.Remove();
    return start->library;
}

DWORD WINAPI RunAgentThread(void* argument) {
    FreeLibraryAndExitThread(RunWork(argument), 0);
    return 0;
}

HMODULE ReferToThisLibrary() {
    HMODULE library = nullptr;
    // With this flag the text parameter is an address inside the library.
    GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS, reinterpret_cast<const char*>(&RunAgentThread),
                       &library);
    return library;
}

}  // namespace

uint32_t StartAgentThread(std::function<void()> work) {
    auto start = std::make_unique<ThreadStart>();
    start->work = std::move(work);
    start->library = ReferToThisLibrary();
    DWORD threadId = 0;
    working.Add();
    const HANDLE thread = CreateThread(nullptr, 0, &RunAgentThread, start.get(), 0, &threadId);
    if (thread == nullptr) {
        working.Remove();
        FreeLibrary(start->library);
        throw std::bad_alloc();
    }
    static_cast<void>(start.release());
    CloseHandle(thread);
    return threadId;
}

bool WaitForAgentThreads(std::chrono::milliseconds time) {
    return working.WaitForNone(time);
}

}  // namespace simulator
