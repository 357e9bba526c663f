#include "checking/CheckedSink.h"

#include "checking/Callback.h"
#include "checking/Findings.h"

namespace checking {

namespace {

constexpr ServiceText logSink = {0, "", "log sink", "VsMsgbusEntry", "VsMsgbusExit", 1};

}  // namespace

std::shared_ptr<CheckedSink> CheckedSink::Make(const wchar_t* productId, VsKitMsgbus::ILogSink* sink) {
    return sink != nullptr ? std::make_shared<CheckedSink>(productId, sink) : nullptr;
}

CheckedSink::CheckedSink(const wchar_t* productId, VsKitMsgbus::ILogSink* moduleSink)
    : Registration(logSink, productId, moduleSink), sink(moduleSink) {}

void CheckedSink::Write(int level, const wchar_t* text) {
    CallRegistered(
        *this, "Write", [&] { sink->Write(level, text); },
        [&](TraceArguments& arguments) { arguments.Add("level", int64_t{level}).Add("text", text); });
}

}  // namespace checking
