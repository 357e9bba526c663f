#include "scheduler/TaskEnforcerTable.h"

TaskEnforcerRegistrations& TaskEnforcerTable() {
    static TaskEnforcerRegistrations table;
    return table;
}
