#include "bench/bare/bench_calls.h"

int32_t bench_call0(void) {
    return 0;
}

int32_t bench_call2(void* /*handle*/, uint32_t /*number*/) {
    return 0;
}

int32_t bench_call5(void* /*handle*/, const char* /*first*/, const char* /*second*/, uint64_t /*number*/,
                    void** /*out*/) {
    return 0;
}
