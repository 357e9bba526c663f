#pragma once

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <string_view>

#include "checking/Rules.h"
#include "checking/Services.h"

namespace checking {

// Compares the mask with which a product has entered with what is registered for it, and reports each service of which
// one is there without the other, with the details of its rule.
void CompareWithMask(uint32_t mask, const std::function<bool(const ServiceText&)>& isRegistered,
                     const std::function<void(Rule, std::initializer_list<std::string_view>)>& report);

}  // namespace checking
