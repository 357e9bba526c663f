// The agent's tables and arrays. Each raises corvane::ny::utils::exception with the first code that the agent answers
// other than NY_OK, NY_FUNCTION_MISSING included, after releasing what it holds.
#pragma once

#include <cstddef>

#include "values/AgentHandle.h"

TableOwner TableFromVariant(ny_variant_t* variant);
VariantOwner TableValue(ny_table_t* table, const wchar_t* key);
ArrayOwner TableKeys(ny_table_t* table);
size_t ArraySize(ny_array_t* array);
VariantOwner ArrayElement(ny_array_t* array, size_t index);
