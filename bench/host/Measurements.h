// Measures the costs of a host that has the bridge and does not call it: this program loads the built DLL as it runs.
#pragma once

#include "bench/harness/Program.h"

namespace bench {

void MeasureLoading(Session& session);
void MeasureRest(Session& session);

}  // namespace bench
