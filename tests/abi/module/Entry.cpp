#include "VsMsgbus.h"
#include "abi/module/Module.h"
#include "abi/module/Told.h"

namespace {

class Sink final : public VsKitMsgbus::ILogSink {
public:
    void Write(int level, const wchar_t* text) override { Told() << L"Write " << level << L": " << text; }
};

constinit Sink sink;
VsMsgbus* bridge = nullptr;

}  // namespace

const char* ModuleAbi() {
#if defined(_MSC_VER)
    return "microsoft";
#else
    return "gnu";
#endif
}

bool ModuleEnter(const char* productId, uint32_t serviceMask) {
    return VsMsgbusEntry(productId, serviceMask, &sink, &bridge);
}

bool ModuleExit(const char* productId) {
    return VsMsgbusExit(productId, bridge);
}

void ModuleReleaseBuffer(VsKitMsgbus::lpc_buffer* buffer) {
    buffer->Release();
}
