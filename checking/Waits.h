#pragma once

#include <vector>

#include "checking/Watch.h"

namespace checking {

// From construction to destruction the calling thread waits until no thread is inside some registrations. Reports a
// cycle: a thread inside one of them that waits for a registration in which the calling thread is.
class Wait {
public:
    Wait(const char* function, std::vector<RegistrationPointer> whatFor);
    ~Wait();
    Wait(const Wait&) = delete;
    Wait& operator=(const Wait&) = delete;
};

}  // namespace checking
