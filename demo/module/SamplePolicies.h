#pragma once

#include <condition_variable>
#include <map>
#include <mutex>
#include <string>

#include "Speaker.h"
#include "vsmsgbus.hpp"

// Enforces the agent's policies: keeps the settings that this module works with, and says what has changed.
class SamplePolicies {
public:
    explicit SamplePolicies(const Speaker& moduleSpeaker) : speaker(moduleSpeaker) {}

    // Called on a thread of the agent's. When the policies cannot be read, those that were kept stay.
    void Enforce(vsmsgbus::Policies& policies);

    // Asks the agent to send the policies again, and waits until they were enforced. False when it did not.
    bool EnforceAgain(const vsmsgbus::Product& product);

private:
    using Settings = std::map<std::string, std::string>;

    Settings Read(vsmsgbus::Policies& policies) const;
    void SayChanges(const Settings& read) const;
    void SayPoliciesOfUser(vsmsgbus::Policies& policies) const;
    void SayDump(vsmsgbus::Policies& policies) const;

    const Speaker& speaker;
    Settings kept;  // "<section>/<name>" of the sections that matter here; read and written by one callback at a time
    std::mutex mutex;
    std::condition_variable enforced;
    unsigned times = 0;
};
