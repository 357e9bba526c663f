#include "bench/host/Measurements.h"
namespace bench { void MeasureRest(Session&) {} }
