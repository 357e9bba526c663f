// Where a DLL begins and ends: its static objects, what is registered with atexit, and its thread-local storage. The
// linker knows the names, and sorts sections by what follows the "$".
#include <process.h>
#include <windows.h>

// NOLINTBEGIN(bugprone-reserved-identifier)

extern "C" {

using Function = void(__cdecl*)();

BOOL WINAPI DllMain(HINSTANCE library, DWORD reason, LPVOID reserved);
BOOL WINAPI _DllMainCRTStartup(HINSTANCE library, DWORD reason, LPVOID reserved);
int __cdecl atexit(Function function);

// The compiler puts a pointer to each constructor of static objects between these two.
#pragma section(".CRT$XCA", read)
#pragma section(".CRT$XCZ", read)
__declspec(allocate(".CRT$XCA")) extern const Function constructorsBegin = nullptr;
__declspec(allocate(".CRT$XCZ")) extern const Function constructorsEnd = nullptr;

// The thread-local variables of the library, whose first values the compiler puts between the first two, and the calls
// that they need at the beginning of a thread: none.
#pragma section(".tls", read, write)
#pragma section(".tls$ZZZ", read, write)
#pragma section(".CRT$XLA", read)
#pragma section(".CRT$XLZ", read)
__declspec(allocate(".tls")) extern char _tls_start = 0;
__declspec(allocate(".tls$ZZZ")) extern char _tls_end = 0;
__declspec(allocate(".CRT$XLA")) extern const PIMAGE_TLS_CALLBACK _tls_callbacks = nullptr;
__declspec(allocate(".CRT$XLZ")) extern const PIMAGE_TLS_CALLBACK _tls_callbacks_end = nullptr;
unsigned _tls_index = 0;
extern const IMAGE_TLS_DIRECTORY64 _tls_used = {reinterpret_cast<ULONGLONG>(&_tls_start),
                                                reinterpret_cast<ULONGLONG>(&_tls_end),
                                                reinterpret_cast<ULONGLONG>(&_tls_index),
                                                reinterpret_cast<ULONGLONG>(&_tls_callbacks + 1),
                                                0,
                                                {}};

static _onexit_table_t registered;

int __cdecl atexit(Function function) {
    return _register_onexit_function(&registered, reinterpret_cast<_onexit_t>(function));
}

BOOL WINAPI _DllMainCRTStartup(HINSTANCE library, DWORD reason, LPVOID reserved) {
    if (reason == DLL_PROCESS_ATTACH) {
        _initialize_onexit_table(&registered);
        for (const Function* constructor = &constructorsBegin + 1; constructor < &constructorsEnd; ++constructor) {
            if (*constructor != nullptr) {
                (*constructor)();
            }
        }
    }
    const BOOL result = DllMain(library, reason, reserved);
    if (reason == DLL_PROCESS_DETACH) {
        _execute_onexit_table(&registered);
    }
    return result;
}

}  // extern "C"

// NOLINTEND(bugprone-reserved-identifier)
