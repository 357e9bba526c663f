#pragma once

#include <memory>

#include "VsMsgbus/LogSink.h"
#include "checking/Registration.h"

namespace checking {

// A module's log sink.
class CheckedSink final : public VsKitMsgbus::ILogSink, public Registration {
public:
    // Null for null.
    static std::shared_ptr<CheckedSink> Make(const wchar_t* productId, VsKitMsgbus::ILogSink* sink);

    CheckedSink(const wchar_t* productId, VsKitMsgbus::ILogSink* moduleSink);

    void Write(int level, const wchar_t* text) override;

private:
    VsKitMsgbus::ILogSink* const sink;
};

}  // namespace checking
