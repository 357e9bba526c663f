// The agent's policies.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "simulator/core/values/OptionalText.h"
#include "simulator/core/values/Values.h"

namespace simulator {

// A text that a policy may lack.
using PolicyText = std::optional<std::string>;

struct PolicySetting {
    PolicyText name;
    ValuePointer value;  // may be null
};

struct PolicySection {
    PolicyText name;
    std::vector<PolicySetting> settings;
};

struct Policy {
    std::string softwareId;
    PolicyText user;  // none: the machine's policy
    PolicyText feature;
    PolicyText category;
    PolicyText type;
    PolicyText name;
    PolicyText settingsObjectName;
    PolicyText intParameter;
    PolicyText stringParameter;
    PolicyText digest;
    std::vector<PolicySection> sections;
};

// Never changes once it is made.
using PolicyPointer = std::shared_ptr<const Policy>;

// The policies that one fetch gave.
struct PolicyBag {
    std::vector<PolicyPointer> policies;
};

}  // namespace simulator
