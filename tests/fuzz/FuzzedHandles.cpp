#include "fuzz/FuzzedHandles.h"

#include "fuzz/FuzzedAgent.h"

void ny_policy_bag_iterator::DropItem() noexcept {
    FuzzedHandles& handles = FuzzedAgent::Current().handles;
    handles.EndLoan(std::exchange(uri, nullptr));
    handles.EndLoan(std::exchange(value, nullptr));
    text.reset();
}

FuzzedHandles::Entry& FuzzedHandles::Find(FuzzedObject* object) {
    if (object == nullptr) {
        throw Refusal{NY_INVALID_ARGUMENT};
    }
    const auto found = entries.find(object);
    if (found == entries.end()) {
        Found("a handle that is not alive");
    }
    return found->second;
}

void FuzzedHandles::Require(const FuzzedObject* object) const {
    if (object == nullptr) {
        throw Refusal{NY_INVALID_ARGUMENT};
    }
    if (!entries.contains(object)) {
        Found("a handle that is not alive");
    }
}

void FuzzedHandles::EndLoan(FuzzedObject* object) noexcept {
    if (object == nullptr) {
        return;
    }
    Entry& entry = Find(object);
    entry.isLent = false;
    if (entry.references == 0) {
        const auto ended = entries.extract(object);
    }
}

void FuzzedHandles::AddReference(FuzzedObject* object) {
    ++Find(object).references;
}

void FuzzedHandles::Release(FuzzedObject* object) {
    Entry& entry = Find(object);
    if (entry.references == 0) {
        Found("a handle given back by who does not own it");
    }
    if (--entry.references == 0 && !entry.isLent) {
        // Out of the table first: its own end may look there.
        const auto ended = entries.extract(object);
    }
}

void FuzzedHandles::ExpectNoneHeld() {
    for (const auto& [object, entry] : entries) {
        if (entry.references != 0) {
            Found("a handle that was not given back");
        }
    }
    while (!entries.empty()) {
        const auto ended = entries.extract(entries.begin());
    }
}
