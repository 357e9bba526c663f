// Upgrades of the agent from one folder to another and back, and the registrations that follow them.
#pragma once

#include <windows.h>

#include <atomic>
#include <chrono>
#include <filesystem>

#include "bench/harness/Stage.h"

namespace bench {

// Counts what is registered with the bare agent, and wakes who waits for a number of them.
class RegistrationsSeen {
public:
    RegistrationsSeen();
    ~RegistrationsSeen();
    RegistrationsSeen(const RegistrationsSeen&) = delete;
    RegistrationsSeen& operator=(const RegistrationsSeen&) = delete;

    // From now on so many are waited for.
    void Expect(size_t registrations);
    // Whether they come in time.
    bool Wait(std::chrono::milliseconds limit) const;

private:
    void Add();

    const HANDLE reached;
    std::atomic<size_t> count = 0;
    std::atomic<size_t> wanted = 0;
};

// For a host that has entered `products`, and nobody else meanwhile.
class Upgrades {
public:
    // Returns when the host follows: until its thread watches, a change may go by unseen.
    Upgrades(Stage& stageOfAgent, size_t productsOfHost);

    // The seconds from the new version in the registry until all products are registered with the new libraries. When
    // it returns, the thread that follows is done.
    double Next();

private:
    // 0 when the host has not followed in time, or when what was registered was late.
    double Make(std::chrono::milliseconds limit);

    Stage& stage;
    const size_t products;
    RegistrationsSeen seen;
};

}  // namespace bench
