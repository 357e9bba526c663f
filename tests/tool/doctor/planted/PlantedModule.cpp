// A module that makes the mistake which the environment's variable PLANTED_MODULE names, or none.
#include <windows.h>

#include <cstring>
#include <thread>

#include "VsMsgbus.h"

extern "C" {
__declspec(dllexport) bool PlantedLoad();
__declspec(dllexport) bool PlantedUnload();
}

namespace {

class Collector final : public VsKitMsgbus::INYCollectProperties {
public:
    void CollectProperties(bool /*full*/, ISet* /*set*/) override {}
    int32_t GetLogLevel() override { return 0; }
};

class Sink final : public VsKitMsgbus::ILogSink {
public:
    void Write(int /*level*/, const wchar_t* /*text*/) override {}
};

Collector collector;
Sink sink;
VsMsgbus* bridge = nullptr;

bool Makes(const char* mistake) {
    char planned[64] = {};
    ::GetEnvironmentVariableA("PLANTED_MODULE", planned, sizeof planned);
    return std::strcmp(planned, mistake) == 0;
}

uint32_t Mask() {
    if (Makes("mask of nothing")) {
        return 0;
    }
    return Makes("mask bit missing") ? VsMsgbusServiceTask : VsMsgbusServiceProperty;
}

const wchar_t* IdOfSet() {
    if (Makes("id mistyped")) {
        return L"PLANTED_10000";
    }
    return Makes("id in other case") ? L"Planted_1000" : L"PLANTED_1000";
}

bool Enter() {
    if (!Makes("set never called")) {
        VsKitMsgbusSetCollectProperties(IdOfSet(), &collector, nullptr);
    }
    return VsMsgbusEntry("PLANTED_1000", Mask(), Makes("no sink") ? nullptr : &sink, &bridge);
}

}  // namespace

bool PlantedLoad() {
    if (Makes("crash")) {
        ::RaiseException(EXCEPTION_ACCESS_VIOLATION, EXCEPTION_NONCONTINUABLE, 0, nullptr);
    } else if (Makes("hang")) {
        ::WaitForSingleObject(::GetCurrentProcess(), INFINITE);
    } else if (Makes("no entry")) {
        return true;
    } else if (Makes("false")) {
        return false;
    } else if (Makes("entry on another thread")) {
        std::thread(&Enter).detach();
        return true;
    } else if (Makes("crash after entry")) {
        std::thread([] {
            Enter();
            ::RaiseException(EXCEPTION_ACCESS_VIOLATION, EXCEPTION_NONCONTINUABLE, 0, nullptr);
        }).detach();
        return true;
    }
    return Enter();
}

bool PlantedUnload() {
    VsMsgbusExit("PLANTED_1000", bridge);
    if (!Makes("left registered") && !Makes("set never called")) {
        VsKitMsgbusRemoveCollectProperties(IdOfSet());
    }
    return true;
}

// NOLINTNEXTLINE(readability-identifier-naming): the system's name
extern "C" BOOL WINAPI DllMain(HINSTANCE /*library*/, DWORD reason, LPVOID /*reserved*/) {
    return reason != DLL_PROCESS_ATTACH || !Makes("refused load") ? TRUE : FALSE;
}
