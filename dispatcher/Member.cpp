#include "dispatcher/Member.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "VsMsgbus/ny_temp_buffer.h"
#include "agent/ny_agent.h"
#include "base/Boundary.h"
#include "dispatcher/DispatcherLog.h"

namespace bridge {

namespace {

// The file's path in a scratch buffer, for as long as the object lives.
class LibraryPath {
public:
    LibraryPath(const std::optional<std::string>& directory, const char* library) noexcept {
        ny_temp_buffer_init(&buffer);
        if (!directory) {
            text = library;
            return;
        }
        const size_t length = directory->size() + 1 + std::strlen(library) + 1;
        if (ny_temp_buffer_reserve(&buffer, std::max(2 * directory->size(), length)) != 0) {
            return;
        }
        char* path = static_cast<char*>(ny_temp_buffer_get(&buffer));
        std::snprintf(path, ny_temp_buffer_capacity(&buffer), "%s%c%s", directory->c_str(), '\\', library);
        text = path;
    }

    ~LibraryPath() { ny_temp_buffer_uninit(&buffer); }
    LibraryPath(const LibraryPath&) = delete;
    LibraryPath& operator=(const LibraryPath&) = delete;

    // Null when there was no memory for it.
    const char* Text() const noexcept { return text; }

private:
    ny_temp_buffer_t buffer{};
    const char* text = nullptr;
};

int32_t AddLibrary(Member& member, const char* library, const DispatcherLog& log) {
    const auto hasName = [library](const auto& entry) { return entry->fileName == library; };
    const auto found = std::find_if(member.libraries.begin(), member.libraries.end(), hasName);
    if (found != member.libraries.end()) {
        ++(*found)->references;
        return NY_OK;
    }
    return Guarded<int32_t>(NY_OUT_OF_MEMORY, [&]() -> int32_t {
        auto entry = std::make_unique<LibraryEntry>(library);
        const LibraryPath path(member.directory, library);
        if (path.Text() == nullptr) {
            return NY_OUT_OF_MEMORY;
        }
        // Room first: an opened library must find its place.
        member.libraries.reserve(member.libraries.size() + 1);
        const int32_t result = entry->Open(path.Text(), log);
        if (result == NY_OK) {
            member.libraries.push_back(std::move(entry));
        }
        return result;
    });
}

int32_t RemoveLibrary(Member& member, const char* library, const DispatcherLog& log) {
    for (auto entry = member.libraries.begin(); entry != member.libraries.end(); ++entry) {
        LibraryEntry& candidate = **entry;
        if (candidate.fileName == library && candidate.references.load() > 0 && --candidate.references == 0) {
            candidate.Close(log);
            member.libraries.erase(entry);
            break;
        }
    }
    return NY_OK;
}

// The first entry whose stored name begins the name asked for.
int32_t FindLibrary(Member& member, const char* library, LibraryEntry** found) {
    for (const auto& entry : member.libraries) {
        if (std::strncmp(entry->fileName.c_str(), library, entry->fileName.size()) == 0) {
            *found = entry.get();
            return NY_OK;
        }
    }
    return NY_INVALID_ARGUMENT;
}

int32_t LoadSymTable(Member& member, const char* library, const char* const* names, TablePointer* table, size_t count,
                     const DispatcherLog& log) {
    LibraryEntry* entry = nullptr;
    if (library == nullptr || names == nullptr || table == nullptr || count == 0 ||
        FindLibrary(member, library, &entry) != NY_OK) {
        return NY_INVALID_ARGUMENT;
    }
    return entry->LoadSymbols(names, *table, count, log);
}

void ReleaseMember(Member& member, const DispatcherLog& log) {
    for (const auto& entry : member.libraries) {
        entry->Close(log);
    }
    member.libraries.clear();
}

}  // namespace

const MemberOperations memberOperations = {AddLibrary, RemoveLibrary, FindLibrary, LoadSymTable, ReleaseMember};

}  // namespace bridge
