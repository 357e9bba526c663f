#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "dispatcher/Member.h"

namespace bridge {

struct Grouper;

// The operations of a grouper. An empty slot answers NY_UNEXPECTED.
struct GrouperOperations {
    // Adds the product with its runtime directory from the registry, or the default path where there is none; a product
    // that is a member already is left as it is, but its directory is looked up anew while none of its libraries is
    // open. NY_OK or NY_OUT_OF_MEMORY.
    int32_t (*add_member)(Grouper& grouper, const char* product);
    // Nothing in the bridge removes a single member.
    int32_t (*remove_member)(Grouper& grouper, const char* product);
    // Exact and case-sensitive. NY_OK, or NY_INVALID_ARGUMENT when the product is no member.
    int32_t (*find_member)(Grouper& grouper, const char* product, Member** member);
    void* reserved;
    // Releases every member, and with it closes every library.
    void (*release)(Grouper& grouper, const DispatcherLog& log);
};

extern const GrouperOperations grouperOperations;

// The products of one dispatcher.
struct Grouper {
    const GrouperOperations* operations = nullptr;  // none until the dispatcher is initialised
    std::vector<std::unique_ptr<Member>> members;
    std::optional<std::string> defaultPath;
};

}  // namespace bridge
