#include "values/AgentTexts.h"

#include "base/IntoCaller.h"
#include "dispatcher/groups/BufferGroup.h"
#include "dispatcher/groups/VariantGroup.h"
#include "values/BorrowedText.h"

namespace {

// The table of a library that exports nothing.
constexpr void* nothing[variantNames.size()] = {};
static_assert(variantNames.size() >= bufferNames.size());

// Compiled into each function below, which then looks up only what it calls.
INTO_CALLER inline TextFunctions LookUp() noexcept {
    TextFunctions functions{};
    // First: what is closed from now on makes the others stale.
    functions.closings = libraryClosings.load(std::memory_order_acquire);
    void* const* variants = TableOf(variantGroup);
    void* const* buffers = TableOf(bufferGroup);
    if (variants == nullptr || buffers == nullptr) [[unlikely]] {
        functions.closings = noClosings;
        variants = nothing;
        buffers = nothing;
    }
    functions.narrow = {
        agent::ny_variant_create_from_string.In(variants),
        agent::ny_variant_get_string_buffer.In(variants),
        agent::ny_buffer_get_string.In(buffers),
        agent::ny_buffer_release.In(buffers),
    };
    functions.wide = {
        agent::ny_variant_create_from_wstring.In(variants),
        agent::ny_variant_get_wstring_buffer.In(variants),
        agent::ny_wbuffer_get_string.In(buffers),
        agent::ny_wbuffer_release.In(buffers),
    };
    functions.releaseVariant = agent::ny_variant_release.In(variants);
    return functions;
}

}  // namespace

TextFunctions LookUpTextFunctions() noexcept {
    return LookUp();
}

std::string NarrowFromVariant(ny_variant_t* variant) {
    const TextFunctions functions = LookUp();
    return std::string(BorrowedNarrow(functions, variant).View());
}

std::wstring WideFromVariant(ny_variant_t* variant) {
    const TextFunctions functions = LookUp();
    return std::wstring(BorrowedWide(functions, variant).View());
}

std::wstring WideFromNarrow(const char* text, size_t length) {
    const TextFunctions functions = LookUp();
    const TextVariant variant(functions, std::string_view(text, length));
    return std::wstring(BorrowedWide(functions, variant.Get()).View());
}

std::string NarrowFromWide(const wchar_t* text, size_t length) {
    const TextFunctions functions = LookUp();
    const TextVariant variant(functions, std::wstring_view(text, length));
    return std::string(BorrowedNarrow(functions, variant.Get()).View());
}
