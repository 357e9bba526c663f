#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "soak/Conductor.h"
#include "soak/Options.h"
#include "soak/Random.h"

// An agent that does not keep to its contract, for a few operations at a time: it answers errors, calls products late
// or from inside register, and loses its files while it is used. In between it is what it should be, and the bridge
// must be too. What it does follows from the seed and leaves the plan's operations as they are.
class Hostility {
public:
    Hostility(uint64_t seed, const HostileKinds& whatToDo, Conductor& conductorToUse);

    // Once before each operation of the plan.
    void Act();
    // Ends the trouble if there is some: has the conductor check that nothing is left of it.
    void End();
    // The agent forgets the registrations so far: it makes late calls of later ones alone.
    void ForgetRegistrations() const;

    // How often it did what, for people to read.
    std::string Summary() const;

private:
    void Begin();
    void DoSomething();
    void AnswerErrors();
    void CallLate();
    void CallInsideRegister();
    // In two of three times of trouble, when the kind is asked for.
    bool IsChosen(bool isAskedFor) { return isAskedFor && !random.OneIn(3); }

    template <size_t count, class Item>
    const Item& AnyOf(const Item (&items)[count]) {
        return items[random.Below(count)];
    }

    Random random;
    const HostileKinds kinds;
    HostileKinds current;  // in this trouble
    Conductor& conductor;
    unsigned operationsLeft;
    size_t troubles = 0;
    size_t faults = 0;
    size_t lateCalls = 0;
    size_t refusals = 0;  // of those, that had to come
    size_t losses = 0;
};
