// The calls of exports that are made inside callbacks.
#pragma once

#include <span>

#include "reentrancy/CallbackKind.h"

// The state of the world after the call.
enum class Leaves {
    Everything,
    NoRegistration,  // the module is registered anew afterwards
    OtherProducts,   // all products leave and the first one enters anew afterwards
};

struct ExportCase {
    const char* name;  // begins with that of the export, which no other one's name continues
    const char* exportName;
    void (*call)(ReentrancyWorld& world);
    Leaves leaves = Leaves::Everything;
    // Around which callbacks the call on another thread may have to wait until they have returned, at most as long as
    // the bridge says that it waits.
    uint32_t waitsFor = 0;
    // The same with an agent that holds one lock around callbacks and registering.
    uint32_t waitsForWithOneLock = 0;
    // A second product is entered before.
    bool needsOtherProduct = false;
    // Undefined while an Entry or Exit of the only product is under way: the bridge may be there no more, or not yet.
    bool needsInstance = false;
};

std::span<const ExportCase> ExportCases();
