#pragma once

#include <string>

// Whether the line of a transcript is one that a failure of the system may put there, whatever it was that failed: the
// answers that the contract has for failures, and the texts that go to a log. Anything else that a good run does not
// have is a mistake.
bool IsLineOfFailure(const std::string& line);
