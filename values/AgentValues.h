// Conversions between the agent's values and standard strings. Each raises corvane::ny::utils::exception with the first
// code that the agent answers other than NY_OK, NY_FUNCTION_MISSING included, after releasing what it holds; and
// std::bad_alloc when there is no memory, or when the agent names a length that no memory holds.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "values/AgentHandle.h"

// A variant's text, with its exact length: zeros in it are kept.
std::string NarrowFromVariant(ny_variant_t* variant);
std::wstring WideFromVariant(ny_variant_t* variant);

// A text variant with the text's own length.
VariantOwner VariantFromNarrow(std::string_view text);
VariantOwner VariantFromWide(std::wstring_view text);

// Terminated, and measured at compile time.
inline constexpr std::string_view noNarrowText = "";  // NOLINT(readability-redundant-string-init): empty, not null
inline constexpr std::wstring_view noWideText = L"";  // NOLINT(readability-redundant-string-init)

// A text that the agent keeps, and what it is kept in: valid as long as the buffer is held. Zero-terminated as all
// texts of the agent's are; never null.
struct BorrowedNarrow {
    BufferOwner buffer;
    std::string_view text = noNarrowText;
};
struct BorrowedWide {
    WideBufferOwner buffer;
    std::wstring_view text = noWideText;
};

// A variant's text without a copy, for who needs it only until the next call or two.
BorrowedWide BorrowWide(ny_variant_t* variant);

// UTF-8 to UTF-16 and back, the agent's way: through a variant.
BorrowedNarrow BorrowNarrowFromWide(std::wstring_view text);
BorrowedWide BorrowWideFromNarrow(std::string_view text);
std::wstring WideFromNarrow(std::string_view text);
void WideFromNarrow(std::string_view text, std::wstring& into);
std::string NarrowFromWide(std::wstring_view text);

TableOwner TableFromVariant(ny_variant_t* variant);
VariantOwner TableValue(ny_table_t* table, const wchar_t* key);
ArrayOwner TableKeys(ny_table_t* table);
size_t ArraySize(ny_array_t* array);
VariantOwner ArrayElement(ny_array_t* array, size_t index);
