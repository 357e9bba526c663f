#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "support/HeldLocks.h"
#include "support/OnPurpose.h"
#include "vsmsgbus.hpp"
#include "vsmsgbus_testing.hpp"

// A test with a machine of vsmsgbus_testing.hpp, without an agent at first.
class MachineFixture : public testing::Test {
protected:
    MachineFixture() { ny_sim_set_held_locks(&HeldLocks); }
    void TearDown() override { machine.ExpectNothingLeft(); }

    static constexpr char id[] = "PRODUCT1000";
    // For what never comes.
    static constexpr std::chrono::milliseconds briefly{50};

    vsmsgbus::testing::Machine machine;

    // The modules here keep no log.
    const OnPurpose usualMistakes{"ENTRY-NO-SINK"};
};

// A handler that gives one property.
inline void TellOne(vsmsgbus::Properties& properties) {
    properties.Set("General", "Version", "1.0");
}

// The text of the Failure that the body throws.
template <class Body>
std::string FailureOf(const Body& body) {
    try {
        body();
    } catch (const vsmsgbus::testing::Failure& failure) {
        return failure.what();
    }
    return "(no failure)";
}
