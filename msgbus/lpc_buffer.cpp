#include "msgbus/lpc_buffer.h"

#include <cstdlib>
#include <string>

#include "base/Blocks.h"

namespace VsKitMsgbus {

namespace {

// Room for a terminated text of so many characters.
template <class Character>
Character* Make(lpc_buffer& buffer, uint32_t kind, size_t length) noexcept {
    buffer.Release();
    auto* const data = static_cast<Character*>(AllocateBlock((length + 1) * sizeof(Character)));
    if (data != nullptr) {
        data[length] = Character();
        buffer.kind = kind;
        buffer.length = length;
        buffer.data = data;
    }
    return data;
}

template <class Character>
bool Store(lpc_buffer& buffer, uint32_t kind, std::basic_string_view<Character> text) noexcept {
    auto* const data = Make<Character>(buffer, kind, text.size());
    if (data != nullptr) {
        std::char_traits<Character>::copy(data, text.data(), text.size());
    }
    return data != nullptr;
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

wchar_t* MakeWideText(lpc_buffer& buffer, size_t length) noexcept {
    return Make<wchar_t>(buffer, lpc_buffer::WideText, length);
}

}  // namespace VsKitMsgbus
