#include "values/AgentTables.h"

#include "dispatcher/groups/VariantGroup.h"
#include "values/AgentException.h"

using corvane::ny::utils::Check;

TableOwner TableFromVariant(ny_variant_t* variant) {
    TableOwner table;
    Check(agent::ny_variant_get_table(variant, table.Out()));
    return table;
}

VariantOwner TableValue(ny_table_t* table, const wchar_t* key) {
    VariantOwner value;
    Check(agent::ny_table_get_wvalue(table, key, value.Out()));
    return value;
}

ArrayOwner TableKeys(ny_table_t* table) {
    ArrayOwner keys;
    Check(agent::ny_table_get_keys(table, keys.Out()));
    return keys;
}

size_t ArraySize(ny_array_t* array) {
    size_t size = 0;
    Check(agent::ny_array_size(array, &size));
    return size;
}

VariantOwner ArrayElement(ny_array_t* array, size_t index) {
    VariantOwner element;
    Check(agent::ny_array_get_element_at(array, index, element.Out()));
    return element;
}
