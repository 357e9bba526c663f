// What a host pays for having the bridge at all: the built DLL, which this program loads as it runs.
#pragma once

#include "bench/harness/Program.h"

namespace bench {

void MeasureLoading(Session& session);
void MeasureRest(Session& session);

}  // namespace bench
