#include "updater/UpdateNotifyTable.h"

UpdateNotifyRegistrations& UpdateNotifyTable() {
    static UpdateNotifyRegistrations table;
    return table;
}
