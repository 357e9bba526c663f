// How much memory a walk and a dump take at most, and how often the heap is asked.
#include "bench/memory/Memory.h"
#include "bench/harness/Module.h"
#include "bench/harness/Stage.h"
#include "bench/memory/CountedHeap.h"

namespace bench {

namespace {

Amount PeakOfWalk(Enforcing& module, size_t settings) {
    Amount amount{"memory",
                  "walk of " + std::to_string(settings) + " settings",
                  static_cast<double>(settings),
                  "bytes",
                  0,
                  {},
                  "at most 4096 at any size"};
    module.Enforce([&](IPolicyBag& bag) {
        SettingCounter callbacks;
        const HeapPeak peak;
        bag.EnumeratePolicies(bareWideProductId, &callbacks);
        amount.ours = static_cast<double>(peak.Bytes());
        amount.isMet = callbacks.settings == settings && peak.Bytes() <= 4096;
        amount.others = {{"allocations", static_cast<double>(peak.Allocations())}};
    });
    return amount;
}

Amount PeakOfDump(Enforcing& module, size_t settings) {
    Amount amount{"memory",
                  "dump of " + std::to_string(settings) + " settings",
                  static_cast<double>(settings),
                  "bytes",
                  0,
                  {},
                  "at most 2.01 times the text, and 4096"};
    module.Enforce([&](IPolicyBag& bag) {
        VsKitMsgbus::lpc_buffer text{};
        const HeapPeak peak;
        bag.Dump(&text);
        const size_t bytes = (text.length + 1) * sizeof(wchar_t);
        amount.ours = static_cast<double>(peak.Bytes());
        amount.others = {{"text", static_cast<double>(bytes)}};
        amount.isMet = text.length > settings && peak.Bytes() <= 2 * bytes + bytes / 100 + 4096;
        text.Release();
    });
    return amount;
}

}  // namespace

void MeasureMemory(Session& session) {
    const Stage stage;
    const Entered entered(VsMsgbusServicePolicy);
    Enforcing module;
    TheBareAgent()->textLength = 12;
    for (const size_t settings : {size_t{100}, size_t{1000}, size_t{10000}, size_t{100000}, size_t{1000000}}) {
        if (session.isQuick && settings > 10000) {
            break;
        }
        TheBareAgent()->settings = settings;
        session.report.Add(PeakOfWalk(module, settings));
        session.report.Add(PeakOfDump(module, settings));
    }
}

}  // namespace bench
