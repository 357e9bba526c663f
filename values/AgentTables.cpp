#include "values/AgentTables.h"

#include "dispatcher/groups/VariantGroup.h"
#include "values/AgentException.h"

namespace bridge {

AgentTables::AgentTables(const LibrariesInUse* inUse) noexcept
    : libraries(inUse), functions(TableOf(variantGroup, inUse)) {}

TableOwner AgentTables::FromVariant(ny_variant_t* variant) const {
    TableOwner table;
    Check(agent::ny_variant_get_table.In(functions)(variant, table.Out(libraries)));
    return table;
}

VariantOwner AgentTables::Value(ny_table_t* table, const wchar_t* key) const {
    VariantOwner value;
    Check(agent::ny_table_get_wvalue.In(functions)(table, key, value.Out(libraries)));
    return value;
}

ArrayOwner AgentTables::Keys(ny_table_t* table) const {
    ArrayOwner keys;
    Check(agent::ny_table_get_keys.In(functions)(table, keys.Out(libraries)));
    return keys;
}

size_t AgentTables::Size(ny_array_t* array) const {
    size_t size = 0;
    Check(agent::ny_array_size.In(functions)(array, &size));
    return size;
}

VariantOwner AgentTables::Element(ny_array_t* array, size_t index) const {
    VariantOwner element;
    Check(agent::ny_array_get_element_at.In(functions)(array, index, element.Out(libraries)));
    return element;
}

}  // namespace bridge
