#include "policy/EnforcerTable.h"

#include "base/UntilUnloaded.h"

EnforcerRegistrations& EnforcerTable() {
    static UntilUnloaded<EnforcerRegistrations> table;
    return table.Get();
}
