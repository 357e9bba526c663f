// What is measured as a module sees it: the built DLL through its exports.
#pragma once

#include "bench/harness/Program.h"

namespace bench {

void MeasureProperties(Session& session);
void MeasurePolicies(Session& session);
void MeasureServices(Session& session);
void MeasureLayer(Session& session);
void MeasureLifeCycle(Session& session);
void MeasureProducts(Session& session);
void MeasureRequests(Session& session);

}  // namespace bench
