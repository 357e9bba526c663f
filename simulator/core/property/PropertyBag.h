// The bag that a product fills with its properties during one request.
#pragma once

#include <mutex>
#include <string>
#include <vector>

#include "simulator/core/values/Values.h"

namespace simulator {

struct Property {
    std::string path;
    std::string name;
    ValuePointer value;
};

class PropertyBag {
public:
    void Add(Property property);
    // In the order in which they were added.
    std::vector<Property> Properties() const;

private:
    mutable std::mutex mutex;
    std::vector<Property> properties;
};

}  // namespace simulator
