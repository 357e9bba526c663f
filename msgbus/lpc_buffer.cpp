#include "msgbus/lpc_buffer.h"

#include <cstdlib>
#include <string>

#include "base/Blocks.h"

namespace VsKitMsgbus {

namespace {

template <class Character>
bool Store(lpc_buffer& buffer, uint32_t kind, std::basic_string_view<Character> text) noexcept {
    buffer.Release();
    auto* const data = static_cast<Character*>(AllocateBlock((text.size() + 1) * sizeof(Character)));
    if (data == nullptr) {
        return false;
    }
    std::char_traits<Character>::copy(data, text.data(), text.size());
    data[text.size()] = Character();
    buffer.kind = kind;
    buffer.length = text.size();
    buffer.data = data;
    return true;
}

}  // namespace

void lpc_buffer::Release() noexcept {
    if (data != nullptr && kind != Empty) {
        std::free(data);
    }
    *this = lpc_buffer{};
}

bool StoreText(lpc_buffer& buffer, std::wstring_view text) noexcept {
    return Store(buffer, lpc_buffer::WideText, text);
}

bool StoreText(lpc_buffer& buffer, std::string_view text) noexcept {
    return Store(buffer, lpc_buffer::NarrowText, text);
}

}  // namespace VsKitMsgbus
