#include "property/CollectorTable.h"

CollectorRegistrations& CollectorTable() {
    static CollectorRegistrations table;
    return table;
}
