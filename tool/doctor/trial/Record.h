#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace tool::doctor {

// The checking bridge's record of a module (docs/CHECKS.md), read for the products that enter and what they register.
// The file may be read while it is still written.
class Record {
public:
    explicit Record(const std::filesystem::path& file);

    struct Product {
        uint32_t mask = 0;   // of its first Entry
        bool answer = true;  // of its last Entry; true for one that has not returned
        bool hasLeft = false;
    };
    // The products that have called VsMsgbusEntry, by id.
    const std::map<std::string, Product>& Products() const { return products; }
    // The ids under which something is or was registered, by the name of the function that registers it.
    const std::map<std::string, std::set<std::string>>& Registered() const { return registered; }
    // Whether the bridge has begun to start the agent's client.
    bool HasAgent() const { return hasAgent; }
    size_t Events() const { return events; }

private:
    void ReadLine(const std::string& line);

    std::map<std::string, Product> products;
    std::map<std::string, std::set<std::string>> registered;
    std::map<uint32_t, std::vector<std::string>> entering;  // the ids inside VsMsgbusEntry, by thread
    bool hasAgent = false;
    size_t events = 0;
};

}  // namespace tool::doctor
