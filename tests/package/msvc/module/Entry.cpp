#include "MicrosoftModule.h"
#include "Told.h"
#include "VsMsgbus.h"

namespace {

class Sink final : public VsKitMsgbus::ILogSink {
public:
    void Write(int level, const wchar_t* text) override { Told() << L"Write " << level << L": " << text; }
};

constinit Sink sink;
VsMsgbus* bridge = nullptr;

}  // namespace

bool MicrosoftModuleEnter(const char* productId, uint32_t serviceMask) {
    return VsMsgbusEntry(productId, serviceMask, &sink, &bridge);
}

bool MicrosoftModuleExit(const char* productId) {
    return VsMsgbusExit(productId, bridge);
}

void MicrosoftModuleReleaseBuffer(VsKitMsgbus::lpc_buffer* buffer) {
    buffer->Release();
}
