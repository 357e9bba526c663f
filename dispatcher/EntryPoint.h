// Lazy entry points: how an agent function is called without being linked.
//
// A group is data: its name, its library, its function names. Each source that includes a group's header has a copy of
// the group of its own, with its own table pointer. On first use an entry point has the dispatcher load the group; from
// then on a call is: load the table pointer, load the slot, call.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "agent/ny_agent.h"
#include "base/Attributes.h"
#include "dispatcher/LibraryEntry.h"

namespace bridge {

// The agent's software id, the product of every group.
inline constexpr char agentSoftwareId[] = "RDXAGENT3000";

struct Group {
    const char* name;
    const char* library;
    const char* const* names;
    size_t count;
    TablePointer table = nullptr;
    uint32_t version = 0;
};

template <size_t count>
using NameTable = std::array<const char*, count>;

// The dispatcher loads the group, or unloads its library. Its result code is not needed, because the table pointer
// tells whether it has worked.
void LoadGroup(Group& group) noexcept;
void UnloadLibrary(const Group& group) noexcept;

// Loads the group and returns its table; null when it could not be loaded.
RARELY_CALLED void** LoadedTable(Group& group) noexcept;

// The group's table. Loads the group when it is not loaded; null when that fails.
ALWAYS_INLINE inline void** TableOf(Group& group) noexcept {
    void** const table = group.table.load(std::memory_order_acquire);
    return table != nullptr ? table : LoadedTable(group);
}

// The group's table in the libraries `inUse`, which the caller shares; null when they were closed. Addresses from it
// may be called until the caller lets go of the libraries, whatever is loaded meanwhile. With null for `inUse`, the
// table of the library that is open.
inline void* const* TableOf(Group& group, const LibrariesInUse* inUse) noexcept {
    // The table is read first: as long as no library was closed after that, it is one of the caller's libraries.
    void* const* const table = TableOf(group);
    return inUse == nullptr || inUse->AreCurrent() ? table : nullptr;
}

namespace entrypoint {

// The name of a function in a compiler's text about it: the name alone, the name behind its namespace or "&", or the
// whole declaration, which Microsoft's compiler gives.
constexpr std::string_view NameIn(std::string_view declaration) {
    size_t end = declaration.find_last_not_of(' ') + 1;
    if (end != 0 && declaration[end - 1] == ')') {
        // The parameters may have brackets of their own.
        int depth = 0;
        do {
            --end;
            depth += declaration[end] == ')' ? 1 : 0;
            depth -= declaration[end] == '(' ? 1 : 0;
        } while (depth != 0 && end != 0);
    }
    const size_t before = declaration.find_last_of(" &:<*", end - 1);
    return declaration.substr(before + 1, end - before - 1);
}

// The name of a function of the agent's as its prototype spells it.
template <auto function>
consteval std::string_view NameOf() {
#if defined(__clang__) || defined(__GNUC__)
    const std::string_view text = __PRETTY_FUNCTION__;
    const size_t begin = text.rfind("function = ");
    return NameIn(text.substr(begin, text.find_first_of(";]", begin) - begin));
#else
    const std::string_view text = __FUNCSIG__;
    const size_t begin = text.find("NameOf<");
    return NameIn(text.substr(begin, text.rfind(">(") - begin));
#endif
}

// A function's place in a name table. A name that the table lacks does not compile.
template <size_t count>
constexpr size_t SlotOf(std::string_view name, const NameTable<count>& names) {
    for (size_t slot = 0; slot < count; ++slot) {
        if (name == names[slot]) {
            return slot;
        }
    }
    throw "the group's name table lacks this function";
}

constexpr bool Contains(std::string_view name, std::string_view part) {
    return name.find(part) != std::string_view::npos;
}

}  // namespace entrypoint

template <auto function, const auto& names, Group& group>
class EntryPoint;

// Stands for one agent function, with exactly its parameters: name and signature both come from its prototype. Answers
// what the agent answers, or NY_FUNCTION_MISSING when the function cannot be reached.
template <class... Arguments, int32_t (*function)(Arguments...), const auto& names, Group& group>
class EntryPoint<function, names, group> {
public:
    using Function = int32_t (*)(Arguments...);

    int32_t operator()(Arguments... arguments) const {
        // Plain substring tests, kept on purpose: they match "..._set_initiator_type" as well.
        if constexpr (entrypoint::Contains(name, "_init")) {
            LoadGroup(group);
        }
        const int32_t result = Call(arguments...);
        if constexpr (entrypoint::Contains(name, "_deinit")) {
            UnloadLibrary(group);
        }
        return result;
    }

    // The agent's function itself, which the caller may call while it is inside the libraries; `table` is its group's.
    // A function that answers NY_FUNCTION_MISSING when the library does not export it, or when the table is null.
    // NOLINTNEXTLINE(readability-convert-member-functions-to-static): the entry points are objects
    Function In(void* const* table) const noexcept {
        const Function address = FindIn(table);
        return address != nullptr ? address : &Missing;
    }

    // The same, or null when the library does not export the function, or when the table is null.
    // NOLINTNEXTLINE(readability-convert-member-functions-to-static)
    Function FindIn(void* const* table) const noexcept {
        static_assert(!entrypoint::Contains(name, "init"), "calling it loads or closes a library");
        return table != nullptr ? reinterpret_cast<Function>(table[slot]) : nullptr;
    }

    // The same two, in the libraries `inUse` or, when it is null, in those that are open. Both load the group when it
    // is not loaded.
    Function In(const LibrariesInUse* inUse) const noexcept { return In(TableOf(group, inUse)); }
    Function Find(const LibrariesInUse* inUse = nullptr) const noexcept { return FindIn(TableOf(group, inUse)); }

private:
    static constexpr std::string_view name = entrypoint::NameOf<function>();
    static constexpr size_t slot = entrypoint::SlotOf(name, names);

    static int32_t Call(Arguments... arguments) {
        void** const table = TableOf(group);
        void* const address = table != nullptr ? table[slot] : nullptr;
        if (address == nullptr) [[unlikely]] {
            return NY_FUNCTION_MISSING;
        }
        return reinterpret_cast<Function>(address)(arguments...);
    }

    static int32_t Missing(Arguments... /*arguments*/) { return NY_FUNCTION_MISSING; }
};

}  // namespace bridge
