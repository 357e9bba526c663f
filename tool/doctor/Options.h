#pragma once

#include <chrono>
#include <string>

namespace tool::doctor {

// What the command line says, as UTF-8.
struct Options {
    // Of the trial when no product is named: one that no agent knows, so that nothing of a real product is touched.
    static constexpr char trialProduct[] = "VSMSGDOC1000";

    std::string product;  // empty when none is named
    std::string module;   // the same
    std::string enter;
    std::string leave;
    std::string localMachine;
    unsigned waitSeconds = 10;
    bool asJson = false;

    std::string TrialProduct() const { return product.empty() ? trialProduct : product; }
    std::chrono::milliseconds Wait() const { return std::chrono::seconds(waitSeconds); }
};

}  // namespace tool::doctor
