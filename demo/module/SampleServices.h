#pragma once

#include "Speaker.h"

// Asks the agent about itself and has it encrypt a secret and decrypt it again, and says what came of it. True when the
// agent knew all and gave the secret back. Throws vsmsgbus::Error when the agent fails.
bool UseAgentServices(const Speaker& speaker);
