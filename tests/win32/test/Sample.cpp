// A library with exports, some of which call the layer.
#include <windows.h>

extern "C" __declspec(dllexport) int SampleAnswer() {
    return 42;
}

extern "C" __declspec(dllexport) BOOL SampleSetEvent(HANDLE event) {
    const BOOL answer = ::SetEvent(event);
    return answer;
}

extern "C" __declspec(dllexport) DWORD SampleWait(HANDLE event, DWORD milliseconds) {
    const DWORD answer = ::WaitForSingleObject(event, milliseconds);
    return answer;
}
