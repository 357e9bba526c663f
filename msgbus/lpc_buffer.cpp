#include "msgbus/lpc_buffer.h"

#include <cstdlib>
#include <string>

namespace VsKitMsgbus {

void lpc_buffer::Release() noexcept {
    if (data != nullptr && kind != Empty) {
        std::free(data);
    }
    *this = lpc_buffer{};
}

bool StoreText(lpc_buffer& buffer, std::wstring_view text) noexcept {
    buffer.Release();
    auto* const data = static_cast<wchar_t*>(std::malloc((text.size() + 1) * sizeof(wchar_t)));
    if (data == nullptr) {
        return false;
    }
    std::char_traits<wchar_t>::copy(data, text.data(), text.size());
    data[text.size()] = L'\0';
    buffer.kind = lpc_buffer::WideText;
    buffer.length = text.size();
    buffer.data = data;
    return true;
}

}  // namespace VsKitMsgbus
