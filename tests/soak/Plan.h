#pragma once

#include <array>
#include <bitset>
#include <cstdint>
#include <string>

#include "soak/Random.h"
#include "soak/Services.h"

// One step of the soak.
struct Operation {
    enum class Kind {
        Install,
        Upgrade,
        RemoveAgent,
        Enter,        // also for a product that is in already
        Leave,        // a product that is in
        LeaveAll,     // whoever is in
        LeaveNobody,  // an Exit that names no product of the bridge's
        Set,          // also for an id that has a registration already
        Remove,
        Ask,  // the agent asks the product, and the answer is compared with what must be
    };

    Kind kind = Kind::LeaveNobody;
    size_t product = 0;
    Service service = Service::Property;
    uint32_t mask = 0;
    bool isWaitedFor = false;  // of the agent's changes: until the bridge has followed
    bool isOlderBuild = false;
};

// As people read it.
std::string TextOf(const Operation& operation);

// A sequence of operations that follows from its seed alone, so that it can be had again. It never ends.
class Plan {
public:
    explicit Plan(uint64_t seed) : random(seed) {}

    Operation Next();

private:
    Operation ChangeOfAgent();
    Operation ChangeOfProduct();
    Operation ChangeOfRegistration();

    Random random;
    bool isInstalled = false;
    std::bitset<productCount> entered;
    std::array<std::bitset<serviceCount>, productCount> registered;
};
