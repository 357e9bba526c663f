#include "msgbus/BridgeLog.h"

#include "base/Boundary.h"
#include "base/ModuleSlot.h"
#include "base/NoDestroyAtExit.h"

namespace bridge {

using VsKitMsgbus::ILogSink;

namespace {

NoDestroyAtExit<ModuleSlot<ILogSink>> currentSink;

}  // namespace

bool OfferLogSink(ILogSink* sink) {
    return sink != nullptr && currentSink->Offer(sink);
}

void ClearLogSink() noexcept {
    Guarded([] { currentSink->Exchange(nullptr); });
}

const ILogSink* CurrentLogSink() noexcept {
    return currentSink->Address();
}

void WriteBridgeLog(const VsKit::CUniStream& text) noexcept {
    if (!text.Text().empty()) {
        Guarded([&] {
            currentSink->Call(CallGate::Admission::Together, &ILogSink::Write, bridgeLogLevel, text.Text().c_str());
        });
    }
}

void WriteFailure(const ModuleInterface<ILogSink>& sink, const VsKit::CUniStream& text) noexcept {
    if (sink && !text.Text().empty()) {
        Guarded([&] { sink.Call(&ILogSink::Write, failureLogLevel, text.Text().c_str()); });
    }
}

}  // namespace bridge
