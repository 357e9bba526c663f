#include "References.h"

#include <map>
#include <mutex>

#include "Call.h"
#include "SystemLock.h"
#include "win32_faults.h"

namespace win32 {

namespace {

struct References {
    SystemLock lock;
    std::map<HMODULE, size_t> counts;
};

// Never destroyed: threads may outlive the end of main.
References& TheReferences() {
    static References& references = *new References;
    return references;
}

}  // namespace

HMODULE Count(HMODULE library) {
    References& references = TheReferences();
    const std::lock_guard guard(references.lock);
    ++references.counts[library];
    return library;
}

void Discount(HMODULE library) {
    References& references = TheReferences();
    const std::lock_guard guard(references.lock);
    const auto found = references.counts.find(library);
    if (found == references.counts.end() || found->second == 0) {
        throw Failure{ERROR_MOD_NOT_FOUND};
    }
    // The entry stays: whose thread frees what whose thread made is something that the thread sanitizer does see.
    --found->second;
}

size_t LibraryReferences() {
    References& references = TheReferences();
    const std::lock_guard guard(references.lock);
    size_t sum = 0;
    for (const auto& [library, count] : references.counts) {
        sum += count;
    }
    return sum;
}

}  // namespace win32
