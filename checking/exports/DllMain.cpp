// The entry point of the checking DLL: what modules have left behind is told when it is unloaded or the process ends,
// and the end of a thread is noted, because what lies on its stack goes with it.
#include <windows.h>

#include "base/Boundary.h"
#include "base/NoDestroyAtExit.h"
#include "checking/Findings.h"
#include "checking/Watch.h"
#include "checking/trace/Trace.h"

extern "C" BOOL WINAPI DllMain(HINSTANCE library, DWORD reason, LPVOID reserved);

namespace checking {

namespace {

void ReportLeftBehind(const char* when) {
    Watch& watch = Watch::OfProcess();
    // A thread that was ended may have held it.
    if (!watch.Lock().CanBeHad()) {
        return;
    }
    for (const auto& [id, product] : watch.Products()) {
        Report(Rule::ExitMissing, id, {when});
    }
    for (const RegistrationPointer& registration : watch.Registrations()) {
        Report(Rule::LeftRegistered, registration->NarrowId(),
               {registration->Service().noun, registration->Library(), when});
    }
}

}  // namespace

}  // namespace checking

extern "C" BOOL WINAPI DllMain(HINSTANCE /*library*/, DWORD reason, LPVOID reserved) {
    if (reason == DLL_THREAD_DETACH) {
        checking::Registration::NoteThreadEnd(::GetCurrentThreadId());
    }
    if (reason == DLL_PROCESS_DETACH) {
        bridge::isProcessEnding = reserved != nullptr;
        bridge::Guarded(
            [&] { checking::ReportLeftBehind(reserved != nullptr ? "the process ends" : "VsMsgbus.dll is unloaded"); });
        checking::FinishTrace();
    }
    return TRUE;
}
