#include "simulator/core/property/PropertyBag.h"

namespace simulator {

void PropertyBag::Add(Property property) {
    const std::lock_guard lock(mutex);
    properties.push_back(std::move(property));
}

std::vector<Property> PropertyBag::Properties() const {
    const std::lock_guard lock(mutex);
    return properties;
}

}  // namespace simulator
