// The bare agent: the agent's four libraries with functions that do the least that their callers can live with. Handles
// are numbers, texts are pieces of one text of 'x', nothing is locked, recorded or allocated, so that what is measured
// around its calls is the caller's own work. Not for tests: it checks nothing.
//
// What is here belongs to ny_bare.dll, which outlives the four libraries.
#pragma once

#include <cstddef>
#include <cstdint>

#include "agent/ny_agent.h"

// The longest text that a variant of the bare agent can have.
inline constexpr size_t longestBareText = size_t{64} * 1024;

// A function that the agent was given, with the pointer that goes with it.
template <class Callback>
struct BareRegistration {
    Callback callback = nullptr;
    void* userData = nullptr;
};

// The whole state of the bare agent; one measurement at a time sets and reads it.
struct BareAgent {
    // How many policies a bag has, sections each has, and settings each section has.
    size_t containers = 1;
    size_t sections = 1;
    size_t settings = 0;

    // The length of the texts that `ny_info_get` gives, and of every value of a setting.
    size_t textLength = 12;

    // What was registered last.
    BareRegistration<ny_property_provider_t> properties;
    BareRegistration<ny_policy_callback_t> policies;
    BareRegistration<const ny_task_callbacks_t*> tasks;
    BareRegistration<const ny_updater_callbacks_t*> updates;

    // Called at the end of every registration for properties, when set.
    void (*whenRegistered)(void* userData) = nullptr;
    void* whenRegisteredData = nullptr;
};

// The one bare agent of the process.
extern "C" BareAgent* TheBareAgent();

// What the texts of the bare agent with so many characters are.
inline constexpr char bareProductId[] = "xxxxxxxx";
inline constexpr wchar_t bareWideProductId[] = L"xxxxxxxx";
