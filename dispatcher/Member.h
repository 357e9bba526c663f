#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "dispatcher/LibraryEntry.h"

namespace bridge {

class DispatcherLog;
struct Member;

// The operations of a member. A test may put others in place; an empty slot answers NY_UNEXPECTED.
struct MemberOperations {
    // Opens the library, or counts one more use of it when it is open. NY_OK, NY_OUT_OF_MEMORY or the operating
    // system's error code.
    int32_t (*add_library)(Member& member, const char* library, const DispatcherLog& log);
    // Counts one use less; the last one closes the library. Always NY_OK, also for an unknown library.
    int32_t (*remove_library)(Member& member, const char* library, const DispatcherLog& log);
    // NY_OK, or NY_INVALID_ARGUMENT when it is not open.
    int32_t (*find_library)(Member& member, const char* library, LibraryEntry** entry);
    int32_t (*load_sym_table)(Member& member, const char* library, const char* const* names, TablePointer* table,
                              size_t count, const DispatcherLog& log);
    // Closes every library.
    void (*release)(Member& member, const DispatcherLog& log);
};

extern const MemberOperations memberOperations;

// One product, that is, one agent software id, with the libraries opened for it.
struct Member {
    const MemberOperations* operations = &memberOperations;
    std::vector<std::unique_ptr<LibraryEntry>> libraries;
    std::string product;
    std::optional<std::string> directory;  // none: libraries are opened by their bare names
};

}  // namespace bridge
