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

// In a process of its own: loads the checking bridge in the place of the shipped one, then the module, has it enter and
// leave, and waits in between until it has entered and done no more for a while.
void TryModule(const ModuleTrialOptions& options, const TrialSteps& steps);

}  // namespace tool::doctor
