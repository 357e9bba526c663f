#include "bench/inner/Measurements.h"

int main(int argc, char** argv) {
    using namespace bench;
    // First calls first: they need libraries that nobody has opened.
    return RunProgram(argc, argv,
                      {{"first call", MeasureFirstCalls},
                       {"lazy call", MeasureLazyCalls},
                       {"conversion", MeasureConversions},
                       {"look-up", MeasureLookUps},
                       {"module call", MeasureModuleCalls},
                       {"notification", MeasureNotifications}});
}
