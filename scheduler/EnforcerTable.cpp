#include "scheduler/EnforcerTable.h"

EnforcerRegistrations& EnforcerTable() {
    static EnforcerRegistrations table;
    return table;
}
