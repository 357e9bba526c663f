#include "values/AgentTexts.h"

#include "base/Attributes.h"
#include "dispatcher/groups/BufferGroup.h"
#include "dispatcher/groups/VariantGroup.h"
#include "values/BorrowedText.h"

namespace bridge {

namespace {

// Compiled into each function below, which then looks up only what it calls.
ALWAYS_INLINE inline TextFunctions LookUp(const LibrariesInUse* inUse = nullptr) noexcept {
    TextFunctions functions{};
    // First: a library that is closed from now on makes the functions stale.
    functions.closings = libraryClosings.load(std::memory_order_acquire);
    void* const* const variants = TableOf(variantGroup, inUse);
    // A library that cannot be loaded is not asked for twice: each time the dispatcher says so in the log.
    void* const* const buffers = variants != nullptr ? TableOf(bufferGroup, inUse) : nullptr;
    if (buffers == nullptr) [[unlikely]] {
        functions.closings = noClosings;
    }
    // The agent is asked for no handle that could not be given back.
    void* const* const madeVariants = agent::ny_variant_release.FindIn(variants) != nullptr ? variants : nullptr;
    functions.narrow = {
        agent::ny_variant_create_from_string.In(madeVariants),
        agent::ny_variant_get_string_buffer.In(agent::ny_buffer_release.FindIn(buffers) != nullptr ? variants
                                                                                                   : nullptr),
        agent::ny_buffer_get_string.In(buffers),
        agent::ny_buffer_release.In(buffers),
    };
    functions.wide = {
        agent::ny_variant_create_from_wstring.In(madeVariants),
        agent::ny_variant_get_wstring_buffer.In(agent::ny_wbuffer_release.FindIn(buffers) != nullptr ? variants
                                                                                                     : nullptr),
        agent::ny_wbuffer_get_string.In(buffers),
        agent::ny_wbuffer_release.In(buffers),
    };
    functions.releaseVariant = agent::ny_variant_release.In(variants);
    return functions;
}

}  // namespace

TextFunctions LookUpTextFunctions(const LibrariesInUse* inUse) noexcept {
    return LookUp(inUse);
}

std::string NarrowFromVariant(ny_variant_t* variant, const LibrariesInUse* inUse) {
    return std::string(BorrowedNarrow(LookUp(inUse), variant).View());
}

std::wstring WideFromVariant(ny_variant_t* variant, const LibrariesInUse* inUse) {
    return WideFromVariant(LookUp(inUse), variant);
}

std::wstring WideFromVariant(const TextFunctions& functions, ny_variant_t* variant) {
    return std::wstring(BorrowedWide(functions, variant).View());
}

std::wstring WideFromNarrow(const char* text, size_t length, const LibrariesInUse* inUse) {
    const TextFunctions functions = LookUp(inUse);
    const TextVariant variant(functions, std::string_view(text, length));
    return std::wstring(BorrowedWide(functions, variant.Get()).View());
}

std::string NarrowFromWide(const wchar_t* text, size_t length, const LibrariesInUse* inUse) {
    const TextFunctions functions = LookUp(inUse);
    const TextVariant variant(functions, std::wstring_view(text, length));
    return std::string(BorrowedNarrow(functions, variant.Get()).View());
}

std::string LowBytes(const wchar_t* text) {
    std::string bytes;
    for (; *text != L'\0'; ++text) {
        bytes.push_back(static_cast<char>(*text & 0xFF));
    }
    return bytes;
}

}  // namespace bridge
