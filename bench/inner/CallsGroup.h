// A group of the lazy entry points for the functions of ny_calls.dll.
#pragma once

#include "bench/bare/bench_calls.h"
#include "dispatcher/EntryPoint.h"

namespace bridge {

inline constexpr NameTable<3> callsNames = {"bench_call0", "bench_call2", "bench_call5"};

namespace {
constinit Group callsGroup{"bench", "ny_calls.dll", callsNames.data(), callsNames.size()};
}

namespace agent {

constexpr EntryPoint<&::bench_call0, callsNames, callsGroup> bench_call0{};
constexpr EntryPoint<&::bench_call2, callsNames, callsGroup> bench_call2{};
constexpr EntryPoint<&::bench_call5, callsNames, callsGroup> bench_call5{};

}  // namespace agent

}  // namespace bridge
