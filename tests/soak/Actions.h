// The calls of the bridge's exports that the soak's threads make beside the plan.
#pragma once

#include <array>
#include <memory>
#include <mutex>
#include <string>

#include "soak/Modules.h"
#include "soak/Random.h"

// Held for every Entry and Exit of the soak: they are made one at a time in a process.
std::mutex& Door();

// The id whose registrations all threads set and remove. It is in the bridge while a product of the plan is, for all
// services; and because it is the last by name, a start of the agent is over when it is attached for updates.
inline constexpr char sharedId[] = "SHARED";

// The threads that call exports, and the product id that each has to itself.
inline constexpr size_t callerCount = 8;
inline std::string CallerId(size_t caller) {
    return "CALLER" + std::to_string(caller);
}

// One thread's random calls of exports. They make sense as a module's calls, or are what every export must withstand;
// none needs the agent or a product to be there. Within one call of Act every export may be called.
class ExportCaller {
public:
    ExportCaller(uint64_t seed, std::string productId);
    // Takes its registrations back.
    ~ExportCaller();
    ExportCaller(const ExportCaller&) = delete;
    ExportCaller& operator=(const ExportCaller&) = delete;

    struct Action {
        const char* name;
        uint32_t weight;
        void (*run)(ExportCaller& caller);
    };

    // By turns first each action once, then by chance.
    const Action& Next();

private:
    friend struct Actions;

    void ToggleOwn();

    Random random;
    const std::string id;
    const std::wstring wideId;
    std::array<std::unique_ptr<Registered>, serviceCount> own;
    size_t firsts = 0;
};

// The calls that a module's callback makes: exports, and Entry and Exit of a product of its own when no other thread is
// in Entry or Exit.
void CallFromInside();

// Takes back what is registered under sharedId.
void ForgetShared();
