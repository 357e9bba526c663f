#include "property/CTheCollectProperties.h"

#include "dispatcher/groups/PropertyGroup.h"
#include "msgbus/BridgeLog.h"
#include "values/AgentException.h"
#include "values/BorrowedText.h"
#include "values/UnloggedText.h"

namespace bridge {

using VsKit::CUniStream;

namespace {

constexpr int32_t verboseLevel = 4;

std::wstring_view OrEmpty(const wchar_t* text) noexcept {
    return text != nullptr ? std::wstring_view(text) : std::wstring_view(L"");
}

template <class AddFunction>
void AddProperty(const TextFunctions& functions, const AddFunction& add, ny_property_bag_t* bag, const wchar_t* path,
                 const wchar_t* name, const wchar_t* value) {
    BorrowedNarrow narrowPath(functions, OrEmpty(path));
    BorrowedNarrow narrowName(functions, OrEmpty(name));
    const TextVariant variant(functions, std::wstring_view(value));
    functions.RequireCurrent();
    Check(add(bag, narrowPath.Get(), narrowName.Get(), variant.Get()));
}

// Texts that go to no log, see UnloggedText.h. They have functions of their own, so that a property that is not traced
// does not pay for them.
RARELY_CALLED void TraceSkipped(const wchar_t* path, const wchar_t* name) noexcept {
    ComposeUnlogged(
        [&](CUniStream& text) { text << L"The value for " << path << L":" << name << L" is null, skipping"; });
}

RARELY_CALLED void TraceProperty(const wchar_t* path, const wchar_t* name, const wchar_t* value) noexcept {
    ComposeUnlogged([&](CUniStream& text) { text << path << L":" << name << L"=" << value; });
}

}  // namespace

bool CTheCollectProperties::SetProperty(const wchar_t* path, const wchar_t* name, const wchar_t* value) {
    ny_property_bag_t* const current = bag.load(std::memory_order_acquire);
    if (current == nullptr) {
        return false;
    }
    if (value == nullptr) {
        if (IsTracing()) {
            TraceSkipped(path, name);
        }
        return false;
    }
    if (IsTracing()) {
        TraceProperty(path, name, value);
    }
    try {
        AddProperty(*functions, addProperty, current, path, name, value);
        return true;
    } catch (const AgentException& refusal) {
        LogFailure(name, value, refusal.Code());
    } catch (...) {
    }
    return false;
}

void CTheCollectProperties::LookUpFunctions(const LibrariesInUse* inUse) noexcept {
    if (functions && functions->AreCurrent() && (inUse == nullptr || inUse->AreCurrent())) {
        return;
    }
    functions = LookUpTextFunctions(inUse);
    addProperty = agent::ny_property_bag_add_property.In(inUse);
}

bool CTheCollectProperties::IsTracing() const noexcept {
    return sink && logLevel.load(std::memory_order_relaxed) >= verboseLevel;
}

void CTheCollectProperties::LogFailure(const wchar_t* name, const wchar_t* value, int32_t code) const noexcept {
    CUniStream text;
    text << L"Failed to add property for " << name << L"= " << value << L", exception " << code;
    WriteFailure(sink, text);
}

}  // namespace bridge
