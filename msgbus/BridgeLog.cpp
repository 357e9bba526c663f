#include "msgbus/BridgeLog.h"

#include <memory>
#include <utility>

#include "base/Boundary.h"
#include "base/CallGate.h"
#include "base/NoDestroyAtExit.h"
#include "base/SharedSlot.h"
#include "values/ModuleInterface.h"

namespace {

struct SinkInUse {
    explicit SinkInUse(VsKitMsgbus::ILogSink* logSink) : sink(logSink) {}

    const ModuleInterface<VsKitMsgbus::ILogSink> sink;
    CallGate gate;
};

NoDestroyAtExit<SharedSlot<SinkInUse>> currentSink;

}  // namespace

bool OfferLogSink(VsKitMsgbus::ILogSink* sink) {
    return sink != nullptr && (*currentSink).Address() == nullptr &&
           (*currentSink).Offer(std::make_shared<SinkInUse>(sink));
}

void ClearLogSink() noexcept {
    Guarded([] {
        if (const auto cleared = (*currentSink).Exchange(nullptr)) {
            cleared->gate.CloseAndWait();
        }
    });
}

const VsKitMsgbus::ILogSink* CurrentLogSink() noexcept {
    return Guarded<const VsKitMsgbus::ILogSink*>(nullptr, [] {
        const auto sink = (*currentSink).Share();
        return sink != nullptr ? sink->sink.Address() : nullptr;
    });
}

void WriteBridgeLog(const VsKit::CUniStream& text) noexcept {
    Guarded([&] {
        const auto sink = (*currentSink).Share();
        if (sink == nullptr || text.Text().empty()) {
            return;
        }
        const CallGate::Call call(sink->gate);
        if (call) {
            sink->sink.Call(&VsKitMsgbus::ILogSink::Write, bridgeLogLevel, text.Text().c_str());
        }
    });
}
