/// @file
/// Text that the bridge returns.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace VsKitMsgbus {

/// The buffer in which exports return text. The caller owns the record and starts it empty (`lpc_buffer out{};`); the
/// bridge fills it; the caller frees the text with Release.
struct lpc_buffer {
    /// What `kind` says about the text.
    enum : uint32_t {
        Empty = 0,       ///< there is none
        WideText = 1,    ///< UTF-16
        NarrowText = 2,  ///< UTF-8
    };

    uint32_t kind = Empty;  ///< of the text in `data`
    uint64_t length = 0;    ///< in characters, without the terminator
    void* data = nullptr;   ///< zero-terminated, owned by this record, allocated by the bridge's runtime

    /// Frees the text when there is one (data set and kind not 0), then sets all three fields to zero. May be called
    /// again. Exported, because the text belongs to the bridge's heap and not to the module's.
    void Release() noexcept;
};

static_assert(sizeof(lpc_buffer) == 24 && offsetof(lpc_buffer, kind) == 0 && offsetof(lpc_buffer, length) == 8 &&
                  offsetof(lpc_buffer, data) == 16,
              "the layout that the bridge fills in");

/// Frees a buffer's text at its own end.
struct ReleasedAtEnd {
    lpc_buffer& buffer;  ///< the caller's
    ~ReleasedAtEnd() { buffer.Release(); }
};

/// What TakeWideText and TakeNarrowText have in common.
template <class Character>
std::basic_string<Character> TakeText(lpc_buffer& buffer, uint32_t kind) {
    // Also when there is no memory for the string.
    const ReleasedAtEnd released{buffer};
    if (buffer.kind != kind || buffer.data == nullptr) {
        return std::basic_string<Character>();
    }
    return std::basic_string<Character>(static_cast<const Character*>(buffer.data), buffer.length);
}

/// The buffer's wide text in a string of the module's own C++ library; the buffer is empty afterwards. An empty string
/// when there is no wide text in it.
inline std::wstring TakeWideText(lpc_buffer& buffer) {
    return TakeText<wchar_t>(buffer, lpc_buffer::WideText);
}

/// The same for narrow text.
inline std::string TakeNarrowText(lpc_buffer& buffer) {
    return TakeText<char>(buffer, lpc_buffer::NarrowText);
}

}  // namespace VsKitMsgbus
