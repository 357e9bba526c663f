#include "scheduler/TaskEnforcerTable.h"

#include "base/UntilUnloaded.h"

TaskEnforcerRegistrations& TaskEnforcerTable() {
    static UntilUnloaded<TaskEnforcerRegistrations> table;
    return table.Get();
}
