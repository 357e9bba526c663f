#pragma once

#include "SampleCollector.h"

// Asks the agent about itself and has it encrypt a secret and decrypt it again, and says what came of it. True when all
// of it went well.
bool UseAgentServices(const Speaker& speaker);
