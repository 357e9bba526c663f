#include "bench/host/Measurements.h"

int main(int argc, char** argv) {
    using namespace bench;
    // Loading first: once it was entered, the bridge stays.
    return RunProgram(argc, argv, {{"loading", MeasureLoading}, {"at rest", MeasureRest}});
}
