#pragma once

#include <cstdint>

// The ways in which the agent breaks its contract.
struct HostileKinds {
    bool errors = false;           // any of its functions answers an error
    bool lateCalls = false;        // it calls after unregister, which does not always wait for its calls
    bool callsInRegister = false;  // and with a lock of its own around registering and calls, now and then
    bool lostFiles = false;        // its files go while it is used

    bool Any() const { return errors || lateCalls || callsInRegister || lostFiles; }
};

// The options of the command line.
struct SoakOptions {
    uint64_t seed = 0;
    uint64_t operations = 300;
    HostileKinds hostile;
};

const SoakOptions& Options();
