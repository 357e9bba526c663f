#include "updater/UpdateNotifyTable.h"

#include "base/UntilUnloaded.h"

UpdateNotifyRegistrations& UpdateNotifyTable() {
    static UntilUnloaded<UpdateNotifyRegistrations> table;
    return table.Get();
}
