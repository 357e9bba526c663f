#pragma once

#include <vector>

#include "checking/Watch.h"

namespace checking {

// A thread that waits until nobody is inside some registrations, from construction to destruction. Reports when that
// thread is itself inside one that a thread inside these waits for.
class Wait {
public:
    Wait(const char* function, std::vector<RegistrationPointer> whatFor);
    ~Wait();
    Wait(const Wait&) = delete;
    Wait& operator=(const Wait&) = delete;
};

}  // namespace checking
