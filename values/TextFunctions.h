#pragma once

#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "agent/ny_agent.h"
#include "base/Attributes.h"
#include "dispatcher/LibrariesInUse.h"
#include "values/AgentException.h"

namespace bridge {

// The agent's functions for text of one kind of character.
template <class Character, class BufferHandle>
struct FunctionsForText {
    using Buffer = BufferHandle;

    int32_t (*createVariant)(const Character* text, size_t length, ny_variant_t** variant);
    int32_t (*getBuffer)(ny_variant_t* variant, Buffer** buffer);
    int32_t (*getText)(Buffer* buffer, const Character** text, size_t* length);
    int32_t (*releaseBuffer)(Buffer* buffer);
};

// The agent's functions for text, looked up once for many texts: a property makes fourteen calls of them and a setting
// ten, and there may be a million settings. Used by a thread that is inside the agent's libraries, see LibrariesInUse.
// Such a thread may release what the functions made at any time, also when they are no longer current.
struct TextFunctions {
    // Whether the functions are those of the agent that runs now: false once a library of the agent's was closed, and
    // when the library with the functions was not loaded.
    ALWAYS_INLINE bool AreCurrent() const noexcept {
        return closings == libraryClosings.load(std::memory_order_acquire);
    }

    // Raises the agent exception with NY_FUNCTION_MISSING when the functions are not current.
    ALWAYS_INLINE void RequireCurrent() const {
        if (!AreCurrent()) [[unlikely]] {
            throw AgentException(NY_FUNCTION_MISSING);
        }
    }

    template <class Character>
    const auto& Of() const noexcept {
        if constexpr (std::is_same_v<Character, char>) {
            return narrow;
        } else {
            return wide;
        }
    }

    int32_t Release(ny_variant_t* variant) const { return releaseVariant(variant); }
    int32_t Release(ny_buffer_t* buffer) const { return narrow.releaseBuffer(buffer); }
    int32_t Release(ny_wbuffer_t* buffer) const { return wide.releaseBuffer(buffer); }

    uint64_t closings;
    FunctionsForText<char, ny_buffer_t> narrow;
    FunctionsForText<wchar_t, ny_wbuffer_t> wide;
    int32_t (*releaseVariant)(ny_variant_t* variant);
};

// Looks the functions up in the libraries in `inUse`; the functions are not current when those were closed. With null
// it looks in the library that is open, and loads it when none is. A function that cannot be reached is replaced by one
// that answers NY_FUNCTION_MISSING.
TextFunctions LookUpTextFunctions(const LibrariesInUse* inUse = nullptr) noexcept;

}  // namespace bridge
