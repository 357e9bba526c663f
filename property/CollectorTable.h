#pragma once

#include "msgbus/RegistrationTable.h"
#include "property/CTheCollectProperties.h"

// The collectors of all modules of the process, by product id.
RegistrationTable<CTheCollectProperties>& CollectorTable();
