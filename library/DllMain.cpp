// The entry point of the DLL: it learns here whether it is unloaded or the process ends.
#include <windows.h>

#include "base/NoDestroyAtExit.h"

extern "C" BOOL WINAPI DllMain(HINSTANCE library, DWORD reason, LPVOID reserved);

extern "C" BOOL WINAPI DllMain(HINSTANCE /*library*/, DWORD reason, LPVOID reserved) {
    if (reason == DLL_PROCESS_DETACH && reserved != nullptr) {
        bridge::isProcessEnding = true;
    }
    return TRUE;
}
