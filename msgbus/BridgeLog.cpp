#include "msgbus/BridgeLog.h"

#include <memory>
#include <mutex>
#include <utility>

#include "base/Boundary.h"
#include "base/CallGate.h"
#include "base/Mutex.h"
#include "base/UntilUnloaded.h"
#include "values/ModuleInterface.h"

namespace {

struct SinkInUse {
    explicit SinkInUse(VsKitMsgbus::ILogSink* logSink) : sink(logSink) {}

    const ModuleInterface<VsKitMsgbus::ILogSink> sink;
    CallGate gate;
};

Mutex sinkLock;
UntilUnloaded<std::shared_ptr<SinkInUse>> currentSink;

std::shared_ptr<SinkInUse> CopySink() {
    const std::lock_guard guard(sinkLock);
    return *currentSink;
}

}  // namespace

bool OfferLogSink(VsKitMsgbus::ILogSink* sink) {
    const std::lock_guard guard(sinkLock);
    if (sink == nullptr || *currentSink != nullptr) {
        return false;
    }
    *currentSink = std::make_shared<SinkInUse>(sink);
    return true;
}

void ClearLogSink() noexcept {
    Guarded([] {
        std::shared_ptr<SinkInUse> cleared;
        {
            const std::lock_guard guard(sinkLock);
            cleared.swap(*currentSink);
        }
        if (cleared != nullptr) {
            cleared->gate.Close();
            cleared->gate.WaitForOthers();
        }
    });
}

const VsKitMsgbus::ILogSink* CurrentLogSink() noexcept {
    return Guarded<const VsKitMsgbus::ILogSink*>(nullptr, [] {
        const auto sink = CopySink();
        return sink != nullptr ? sink->sink.Address() : nullptr;
    });
}

void WriteBridgeLog(const VsKit::CUniStream& text) noexcept {
    Guarded([&] {
        const auto sink = CopySink();
        if (sink == nullptr || text.Text().empty()) {
            return;
        }
        const CallGate::Call call(sink->gate);
        if (call) {
            sink->sink.Call(&VsKitMsgbus::ILogSink::Write, bridgeLogLevel, text.Text().c_str());
        }
    });
}
