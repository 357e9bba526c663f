#pragma once

#include <cstdint>

namespace bridge {

// What an export of the services answers where the agent gave no code of its own.
constexpr int32_t serviceFailure = -1;

}  // namespace bridge
