#include "checking/CheckedCollector.h"

#include "checking/Callback.h"
#include "checking/Texts.h"

namespace checking {

bool CheckedPropertySet::SetProperty(const wchar_t* path, const wchar_t* name, const wchar_t* value) {
    ISet* const set = Use("SetProperty");
    if (set != nullptr && value == nullptr) {
        bridge::Guarded([&] { Report(Rule::PropertyNull, ProductId(), {Narrow(name)}); });
    }
    return set != nullptr && set->SetProperty(path, name, value);
}

void CheckedCollector::CollectProperties(bool full, ISet* set) {
    const Loan<CheckedPropertySet> loan(set, NarrowId(), "CollectProperties");
    CallRegistered(*this, "CollectProperties", [&] { collector->CollectProperties(full, loan.Get()); });
}

int32_t CheckedCollector::GetLogLevel() {
    return CallRegistered(*this, "GetLogLevel", [&] { return collector->GetLogLevel(); });
}

}  // namespace checking
