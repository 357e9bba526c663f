#include "updater/CTheUpdateNotify.h"

#include <new>

#include "base/Boundary.h"

namespace bridge {

using VsKit::cp_wchar;
using VsKitMsgbus::etag_PRODUCT_RETURN_VALUE;
using VsKitMsgbus::INYUpdateNotifyCallback;

etag_PRODUCT_RETURN_VALUE CTheUpdateNotify::RunGetProductInfo(cp_wchar second, cp_wchar key,
                                                              std::wstring& value) const {
    class SetCb final : public VsKitMsgbus::INYUpdateNotifyCallback::ISet {
    public:
        explicit SetCb(std::wstring& target) noexcept : text(&target) {}

        // Answers the module true also when there is no memory, because no exception of the bridge's may pass the
        // module's code.
        bool Set(const wchar_t* newText) override {
            isLost = !Guarded([&] { *text = newText != nullptr ? newText : L""; });
            return true;
        }

        // Whether the last value found no memory.
        bool IsLost() const noexcept { return isLost; }

    private:
        std::wstring* const text;
        bool isLost = false;
    };

    value.clear();
    SetCb set(value);
    const etag_PRODUCT_RETURN_VALUE result = callback.Call(&INYUpdateNotifyCallback::GetProductInfo, second, key, &set);
    if (set.IsLost()) {
        throw std::bad_alloc();
    }
    return result;
}

}  // namespace bridge
