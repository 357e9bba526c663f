// What is measured from inside the bridge, linked with the objects that the DLL is made of.
#pragma once

#include "bench/harness/Program.h"

namespace bench {

void MeasureFirstCalls(Session& session);
void MeasureLazyCalls(Session& session);
void MeasureConversions(Session& session);
void MeasureLookUps(Session& session);
void MeasureModuleCalls(Session& session);
void MeasureNotifications(Session& session);

}  // namespace bench
