#pragma once

#include <cstddef>

#include "dispatcher/LibrariesInUse.h"
#include "values/AgentHandle.h"

namespace bridge {

// The agent's functions for tables and arrays, looked up once. Used by a thread that is inside the agent's libraries.
// Each raises corvane::ny::utils::exception with the first code that the agent answers other than NY_OK,
// NY_FUNCTION_MISSING included, after releasing what it holds.
class AgentTables {
public:
    // Looks them up in the libraries `inUse`, or in those that are open when it is null. Loads their library when it is
    // not open.
    explicit AgentTables(const LibrariesInUse* inUse = nullptr) noexcept;

    TableOwner FromVariant(ny_variant_t* variant) const;
    VariantOwner Value(ny_table_t* table, const wchar_t* key) const;
    ArrayOwner Keys(ny_table_t* table) const;
    size_t Size(ny_array_t* array) const;
    VariantOwner Element(ny_array_t* array, size_t index) const;

private:
    const LibrariesInUse* libraries;
    void* const* functions;
};

}  // namespace bridge
