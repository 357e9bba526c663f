#include "checking/CheckedCollector.h"

#include "checking/Callback.h"
#include "checking/Texts.h"

namespace checking {

bool CheckedPropertySet::SetProperty(const wchar_t* path, const wchar_t* name, const wchar_t* value) {
    Trace(TracePhase::Begin, "SetProperty",
          [&](TraceArguments& arguments) { arguments.Add("path", path).Add("name", name).Add("value", value); });
    ISet* const set = Use("SetProperty");
    if (set != nullptr && value == nullptr) {
        bridge::Guarded([&] { Report(Rule::PropertyNull, ProductId(), {Narrow(name)}); });
    }
    const bool isTaken = set != nullptr && set->SetProperty(path, name, value);
    Trace(TracePhase::End, "SetProperty", [&](TraceArguments& arguments) { arguments.Add("answer", isTaken); });
    return isTaken;
}

CheckedCollector::CheckedCollector(const wchar_t* productId, VsKitMsgbus::INYCollectProperties* moduleCollector,
                                   std::shared_ptr<CheckedSink> moduleSink)
    : Registration(services[Property], productId, moduleCollector),
      collector(moduleCollector),
      sink(std::move(moduleSink)),
      lent(LentPool<CheckedPropertySet>::OfProcess().Take()) {}

CheckedCollector::~CheckedCollector() {
    lent->EndAll();
    LentPool<CheckedPropertySet>::OfProcess().GiveBack(lent);
}

void CheckedCollector::BeRemoved() noexcept {
    Registration::BeRemoved();
    if (!InsiderOnOtherThread().has_value() && !IsThisThreadInside()) {
        lent->EndAll();
    }
}

void CheckedCollector::CollectProperties(bool full, ISet* set) {
    lent->Begin(set, NarrowId(), "CollectProperties");
    try {
        CallRegistered(*this, "CollectProperties", [&] { collector->CollectProperties(full, lent); });
    } catch (...) {
        lent->End();
        throw;
    }
    if (IsRemoved()) {
        // GetLogLevel does not follow.
        lent->End();
    }
}

int32_t CheckedCollector::GetLogLevel() {
    const struct LoanEnd {
        CheckedPropertySet& set;
        ~LoanEnd() { set.End(); }
    } loanEnd = {*lent};
    return CallRegistered(*this, "GetLogLevel", [&] { return collector->GetLogLevel(); });
}

}  // namespace checking
