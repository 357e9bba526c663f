#include "AgentThread.h"

#include <windows.h>

#include <memory>
#include <new>
#include <utility>

namespace simulator {

namespace {

struct ThreadStart {
    std::function<void()> work;
    HMODULE library = nullptr;
};

// Everything of C++ has ended when this returns, so that nothing of it is left when the library goes.
HMODULE RunWork(void* argument) {
    const std::unique_ptr<ThreadStart> start(static_cast<ThreadStart*>(argument));
    start->work();
    return start->library;
}

DWORD WINAPI RunAgentThread(void* argument) {
    FreeLibraryAndExitThread(RunWork(argument), 0);
    return 0;
}

HMODULE ReferToThisLibrary() {
    HMODULE library = nullptr;
    // A function's address can be given as the text that this flag makes it not be.
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
    const HANDLE thread = CreateThread(nullptr, 0, &RunAgentThread, start.get(), 0, &threadId);
    if (thread == nullptr) {
        FreeLibrary(start->library);
        throw std::bad_alloc();
    }
    static_cast<void>(start.release());
    CloseHandle(thread);
    return threadId;
}

}  // namespace simulator
