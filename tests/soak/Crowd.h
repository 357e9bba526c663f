#pragma once

#include <atomic>
#include <memory>
#include <thread>
#include <vector>

#include "soak/Actions.h"
#include "soak/Activity.h"
#include "support/Event.h"

// The threads beside the plan, from construction to destruction: those that call exports, and those of the agent's that
// call products back, one for each service.
class Crowd {
public:
    Crowd(uint64_t seed, Watchdog& watchdog);
    // Returns when all threads have ended and their registrations are taken back.
    ~Crowd();
    Crowd(const Crowd&) = delete;
    Crowd& operator=(const Crowd&) = delete;

private:
    void CallExports(ExportCaller& caller, Activity& activity);
    void CallBack(Service service, Random random, Activity& activity);

    Event isOver;
    std::vector<std::unique_ptr<ExportCaller>> callers;
    std::vector<std::thread> threads;
};

// Callbacks that the agent made since the program began, those included that found no registration of the module's.
uint64_t CallbacksOfTheAgent();
