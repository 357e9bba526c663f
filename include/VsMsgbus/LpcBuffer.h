/// @file
/// Text that the bridge returns.
#pragma once

#include <cstdint>

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

}  // namespace VsKitMsgbus
