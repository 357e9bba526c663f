#pragma once

#include <cstdint>
#include <string>

#include "VsMsgbus/LpcBuffer.h"

namespace bridge {

// The agent's answers to a question for one key: a code for each step, NY_OK for a step that was not needed.
struct KeyReading {
    int32_t lookUp = 0;
    int32_t read = 0;
    int32_t release = 0;
    std::string text;  // empty unless the first two went well
};

// Asks the agent for a key's value. An agent that is not there fails the look-up with NY_FUNCTION_MISSING.
KeyReading ReadKey(const char* key);

// The value of a key by its index, empty when there is none. A failure of the agent's is logged, and gives an empty
// value too. Raises std::bad_alloc.
std::string ReadInformation(unsigned int index);
// The same as wide text in `out`. False when there is no value, or when it cannot be stored.
bool StoreInformation(unsigned int index, VsKitMsgbus::lpc_buffer& out);

}  // namespace bridge
