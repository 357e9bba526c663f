#pragma once

#include "msgbus/registrations/RegistrationTable.h"
#include "updater/CTheUpdateNotify.h"

namespace bridge {

// Two calls into one module's callback never overlap. The record of a second registration for an id is not freed, kept
// on purpose.
using UpdateNotifyRegistrations =
    RegistrationTable<CTheUpdateNotify, CallGate::Admission::OneThreadAtATime, DuplicateRecord::Leaked>;

// The update callbacks of all modules of the process, by product id.
inline UpdateNotifyRegistrations& UpdateNotifyTable() {
    return TableOfProcess<UpdateNotifyRegistrations>();
}

}  // namespace bridge
