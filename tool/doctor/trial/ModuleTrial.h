#pragma once

#include <chrono>
#include <filesystem>
#include <string>

#include "tool/doctor/trial/TrialSteps.h"

namespace tool::doctor {

struct ModuleTrialOptions {
    std::filesystem::path module;
    std::filesystem::path checkingBridge;
    std::string enter;  // the function to call so that the module enters; empty for none
    std::string leave;  // the same for leaving
    std::chrono::milliseconds wait{};
    std::filesystem::path record;    // the file for the checking bridge's record
    std::filesystem::path findings;  // the file for its findings
};

// The steps that are not named for a function of the module's.
inline constexpr char loadingBridgeStep[] = "the loading of the checking bridge";
inline constexpr char loadingModuleStep[] = "the loading of the module";
inline constexpr char waitingStep[] = "the module's VsMsgbusEntry";

// Called in a process of its own. Loads the checking bridge in the place of the shipped one, then the module, and has
// the module enter and leave. In between it waits until the module has entered and has done nothing for a while.
void TryModule(const ModuleTrialOptions& options, const TrialSteps& steps);

}  // namespace tool::doctor
