// The ways in which a module is called, and how each is brought about.
#pragma once

#include <cstdint>
#include <optional>
#include <span>

#include "reentrancy/World.h"

// The calls around a callback, for which an export that is called meanwhile on another thread may have to wait.
enum Around : uint32_t {
    InCollector = 1,
    InEnforcer = 2,
    InTaskEnforcer = 4,
    InUpdateCallback = 8,
    InAgentCallback = 16,  // the agent waits for it before it lets go of the product
    InAgentLine = 32,      // the agent waits for it before it lets go of the client
    InSink = 64,           // the process-wide one
    InEntryOrExit = 128,
    InWatcher = 256,  // which is at the products, or stops
};

struct CallbackKind {
    const char* name;
    uint32_t around;
    const wchar_t* line;  // a part of the line that is written; empty for other callbacks
    // Brings the callback about and returns when everything that led to it has. The product is entered before, unless
    // the kind enters by itself.
    void (*trigger)(ReentrancyWorld& world);
    // The kind enters and leaves by itself, or changes the agent: the world is entered anew afterwards.
    bool entersItself = false;
    // The agent's call, for a callback that can come inside register.
    std::optional<ny_sim_callback> call = {};
    // Comes with the first product that enters or the last one that leaves: a second one would keep it from coming.
    bool needsToBeAlone = false;
};

std::span<const CallbackKind> CallbackKinds();
