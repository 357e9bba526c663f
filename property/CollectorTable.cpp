#include "property/CollectorTable.h"

RegistrationTable<CTheCollectProperties>& CollectorTable() {
    static RegistrationTable<CTheCollectProperties> table;
    return table;
}
