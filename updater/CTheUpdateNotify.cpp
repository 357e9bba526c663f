#include "updater/CTheUpdateNotify.h"

#include <new>

#include "base/Boundary.h"

namespace bridge {

using VsKit::cp_wchar;
using VsKitMsgbus::etag_PRODUCT_RETURN_VALUE;
using VsKitMsgbus::INYUpdateNotifyCallback;

int32_t CTheUpdateNotify::RunUpdateNotify(cp_wchar second, cp_wchar fourth, cp_wchar third, uint32_t number) const {
    return callback.Call(&INYUpdateNotifyCallback::UpdateNotify, second, fourth, third, &number);
}

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

int32_t CTheUpdateNotify::RunSetProductInfo(cp_wchar second, cp_wchar key, cp_wchar value) const {
    return callback.Call(&INYUpdateNotifyCallback::SetProductInfo, second, key, value);
}

}  // namespace bridge
