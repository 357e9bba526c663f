#include "property/CTheCollectProperties.h"

#include "base/Boundary.h"
#include "dispatcher/groups/PropertyGroup.h"
#include "values/AgentException.h"
#include "values/AgentValues.h"
#include "values/DroppedText.h"

using corvane::ny::utils::Check;
using corvane::ny::utils::exception;
using VsKit::CUniStream;

namespace {

constexpr int32_t verboseLevel = 4;
constexpr int failureLevel = 5;

void AddProperty(ny_property_bag_t* bag, const wchar_t* path, const wchar_t* name, const wchar_t* value) {
    const BorrowedNarrow narrowPath = BorrowNarrowFromWide(path);
    const BorrowedNarrow narrowName = BorrowNarrowFromWide(name);
    const VariantOwner variant = VariantFromWide(value);
    Check(agent::ny_property_bag_add_property(bag, narrowPath.text.data(), narrowName.text.data(), variant.Get()));
}

}  // namespace

bool CTheCollectProperties::SetProperty(const wchar_t* path, const wchar_t* name, const wchar_t* value) {
    ny_property_bag_t* const current = bag.load();
    if (current == nullptr || path == nullptr || name == nullptr) {
        return false;
    }
    if (value == nullptr) {
        Trace([&](CUniStream& text) { text << L"The value for " << path << L":" << name << L" is null, skipping"; });
        return false;
    }
    Trace([&](CUniStream& text) { text << path << L":" << name << L"=" << value; });
    return GuardedBy<exception>(
        false,
        [&] {
            AddProperty(current, path, name, value);
            return true;
        },
        [&](const exception& refusal) {
            LogFailure(name, value, refusal.Code());
            return false;
        },
        [] { return false; });
}

template <class Compose>
void CTheCollectProperties::Trace(Compose&& compose) const noexcept {
    if (sink != nullptr && logLevel.load() >= verboseLevel) {
        DropText(compose);
    }
}

void CTheCollectProperties::LogFailure(const wchar_t* name, const wchar_t* value, int32_t code) const noexcept {
    if (sink == nullptr) {
        return;
    }
    Guarded([&] {
        CUniStream text;
        text << L"Failed to add property for " << name << L"= " << value << L", exception " << code;
        if (!text.Text().empty()) {
            sink->Write(failureLevel, text.Text().c_str());
        }
    });
}
