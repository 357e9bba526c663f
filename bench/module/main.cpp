#include "bench/module/Measurements.h"

int main(int argc, char** argv) {
    using namespace bench;
    // The life cycle first: it needs libraries that nobody has opened.
    return RunProgram(argc, argv,
                      {{"life cycle", MeasureLifeCycle},
                       {"properties", MeasureProperties},
                       {"policies", MeasurePolicies},
                       {"services", MeasureServices},
                       {"layer", MeasureLayer},
                       {"requests", MeasureRequests},
                       {"products", MeasureProducts}});
}
