// Functions of an agent's library that exist to be called: nothing in them but the answer.
#pragma once

#include <cstdint>

extern "C" {

int32_t bench_call0(void);
int32_t bench_call2(void* handle, uint32_t number);
int32_t bench_call5(void* handle, const char* first, const char* second, uint64_t number, void** out);

}  // extern "C"
