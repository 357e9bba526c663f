#pragma once

#include <cstdint>

namespace bridge {

// The answer of an export of the services when the agent gave no code of its own.
constexpr int32_t serviceFailure = -1;

}  // namespace bridge
