#pragma once

#include <chrono>
#include <string>

namespace tool::doctor {

// The options of the command line, as UTF-8.
struct Options {
    // The product of the trial when the command line names none. No agent knows it, so that nothing of a real product
    // is touched.
    static constexpr char trialProduct[] = "VSMSGDOC1000";

    std::string product;  // empty when none is named
    std::string module;   // empty when none is named
    std::string enter;
    std::string leave;
    std::string localMachine;
    unsigned waitSeconds = 10;
    bool asJson = false;

    std::string TrialProduct() const { return product.empty() ? trialProduct : product; }
    std::chrono::milliseconds Wait() const { return std::chrono::seconds(waitSeconds); }
};

}  // namespace tool::doctor
