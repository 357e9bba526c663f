#include "property/CollectorTable.h"

#include "base/UntilUnloaded.h"

CollectorRegistrations& CollectorTable() {
    static UntilUnloaded<CollectorRegistrations> table;
    return table.Get();
}
