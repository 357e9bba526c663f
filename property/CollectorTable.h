#pragma once

#include "msgbus/registrations/RegistrationTable.h"
#include "property/CTheCollectProperties.h"

namespace bridge {

// Two collections of one product never overlap.
using CollectorRegistrations = RegistrationTable<CTheCollectProperties, CallGate::Admission::OneThreadAtATime>;

// The collectors of all modules of the process, by product id.
inline CollectorRegistrations& CollectorTable() {
    return TableOfProcess<CollectorRegistrations>();
}

}  // namespace bridge
