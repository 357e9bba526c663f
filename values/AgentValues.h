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
// Into a string whose memory is used again. On failure it is left as it was.
void WideFromVariant(ny_variant_t* variant, std::wstring& into);

// A text variant with the text's own length.
VariantOwner VariantFromNarrow(std::string_view text);
VariantOwner VariantFromWide(std::wstring_view text);

// UTF-8 to UTF-16 and back, the agent's way: through a variant.
std::wstring WideFromNarrow(std::string_view text);
void WideFromNarrow(std::string_view text, std::wstring& into);
std::string NarrowFromWide(std::wstring_view text);

TableOwner TableFromVariant(ny_variant_t* variant);
VariantOwner TableValue(ny_table_t* table, const wchar_t* key);
ArrayOwner TableKeys(ny_table_t* table);
size_t ArraySize(ny_array_t* array);
VariantOwner ArrayElement(ny_array_t* array, size_t index);
