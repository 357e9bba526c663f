#pragma once

#include <string_view>

#include "VsMsgbus/LpcBuffer.h"

namespace VsKitMsgbus {

// Frees what the buffer holds and puts a copy of the text there: wide text as WideText, narrow text as NarrowText.
// False, with the buffer left empty, when there is no memory for it.
bool StoreText(lpc_buffer& buffer, std::wstring_view text) noexcept;
bool StoreText(lpc_buffer& buffer, std::string_view text) noexcept;

// Frees what the buffer holds and makes it a wide text of so many characters, terminated, which the caller writes where
// the result points to. Null, with the buffer left empty, when there is no memory for it.
wchar_t* MakeWideText(lpc_buffer& buffer, size_t length) noexcept;

}  // namespace VsKitMsgbus
