// The values that the agent gives for its information keys.
#pragma once

#include <map>
#include <mutex>
#include <string>
#include <string_view>

#include "simulator/core/values/Values.h"

namespace simulator {

class Information {
public:
    // A null value removes the key.
    void Set(const std::string& key, ValuePointer value);
    // The entries of the table take the place of all values.
    void SetAll(const Table& table);
    // The value, or null.
    ValuePointer Find(std::string_view key) const;

private:
    mutable std::mutex mutex;
    std::map<std::string, ValuePointer, std::less<>> values;
};

// The one information of this process; lives as TheFrame does.
Information& TheInformation();

}  // namespace simulator
