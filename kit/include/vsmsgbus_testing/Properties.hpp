/// @file
/// A product's answer to a request for its properties.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "ny_simulator.h"
#include "vsmsgbus_testing/Failure.hpp"

namespace vsmsgbus::testing {

/// One property, as the agent got it.
struct Property {
    std::string path;   ///< where it stands
    std::string name;   ///< its name
    std::string value;  ///< its value

    /// "path: name = value"
    std::string Text() const { return path + ": " + name + " = " + value; }
    /// Whether all three texts are the same.
    friend bool operator==(const Property& a, const Property& b) {
        return a.path == b.path && a.name == b.name && a.value == b.value;
    }
};

/// All properties of one answer, in the product's order: a range of Property.
class PropertyList {
public:
    /// The type of the elements.
    using value_type = Property;
    /// Its properties cannot be changed.
    using const_iterator = std::vector<Property>::const_iterator;

    /// For Machine and tests of it.
    explicit PropertyList(std::vector<Property> properties) : all(std::move(properties)) {}

    /// The first one.
    const_iterator begin() const noexcept { return all.begin(); }
    /// Behind the last one.
    const_iterator end() const noexcept { return all.end(); }
    /// How many there are.
    size_t size() const noexcept { return all.size(); }

    /// The value of that property, the first one if it came twice. Throws Failure, with all that was given, when there
    /// is none.
    const std::string& Value(const std::string& path, const std::string& name) const {
        std::string given;
        for (const Property& property : all) {
            if (property.path == path && property.name == name) {
                return property.value;
            }
            detail::AppendTo(given, property.Text());
        }
        throw Failure("there is no property " + path + ": " + name + "; given were " + given);
    }

    /// One line for each, as Property::Text gives it.
    std::string Text() const {
        std::string text;
        for (const Property& property : all) {
            text += property.Text() + '\n';
        }
        return text;
    }

private:
    std::vector<Property> all;
};

namespace detail {

inline std::vector<Property> PropertiesOf(ny_sim_property_request_t* request) {
    std::vector<Property> properties;
    for (size_t i = 0; i < ny_sim_property_request_size(request); ++i) {
        const char* path = nullptr;
        const char* name = nullptr;
        const char* value = nullptr;
        if (ny_sim_property_request_get(request, i, &path, &name, &value) == NY_OK) {
            properties.push_back({path, name, value});
        }
    }
    return properties;
}

/// How the calls of the agent's function fared that began after the first `before` of the record: "it called <function>
/// 2 times, of which the agent refused 1, the last with code 4".
inline std::string DescribeCalls(const std::string& function, size_t before) {
    size_t count = 0;
    size_t refused = 0;
    int32_t lastCode = NY_OK;
    ny_sim_call_t call{};
    for (size_t i = before; ny_sim_get_call(i, &call) == NY_OK; ++i) {
        if (call.function == function) {
            ++count;
            refused += call.result != NY_OK ? 1U : 0U;
            lastCode = call.result != NY_OK ? call.result : lastCode;
        }
    }
    if (count == 0) {
        return "it did not call " + function;
    }
    std::string text = "it called " + function + ' ' + Counted(count, "time", "times");
    if (refused != 0) {
        text += ", of which the agent refused " + std::to_string(refused) + ", the last with code " +
                std::to_string(lastCode);
    }
    return text;
}

}  // namespace detail

}  // namespace vsmsgbus::testing
