#pragma once

#include "bench/harness/Program.h"

namespace bench {

// Measured from inside the bridge, linked with the objects that the DLL is made of, whose heap is counted.
void MeasureMemory(Session& session);

}  // namespace bench
