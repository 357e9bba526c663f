#include "KeyNode.h"

#include <strings.h>

#include <algorithm>
#include <set>
#include <utility>

namespace win32 {

std::mutex& RegistryLock() {
    static std::mutex& lock = *new std::mutex;
    return lock;
}

bool NameLess::operator()(std::string_view left, std::string_view right) const {
    const int order = ::strncasecmp(left.data(), right.data(), std::min(left.size(), right.size()));
    return order != 0 ? order < 0 : left.size() < right.size();
}

std::shared_ptr<KeyNode> KeyNode::Child(std::string_view name) const {
    const auto found = children.find(name);
    return found != children.end() ? found->second : nullptr;
}

std::shared_ptr<KeyNode> KeyNode::AddChild(std::string_view name) {
    auto child = std::make_shared<KeyNode>(this);
    children.emplace(name, child);
    Changed(REG_NOTIFY_CHANGE_NAME);
    return child;
}

void KeyNode::Delete() {
    KeyNode* const above = parent;
    if (above == nullptr) {
        throw Failure{ERROR_ACCESS_DENIED};
    }
    MarkDeleted();
    std::erase_if(above->children, [this](const auto& child) { return child.second.get() == this; });
    above->Changed(REG_NOTIFY_CHANGE_NAME);
}

void KeyNode::Clear() {
    if (!children.empty()) {
        for (const auto& [name, child] : std::exchange(children, {})) {
            child->MarkDeleted();
        }
        Changed(REG_NOTIFY_CHANGE_NAME);
    }
    if (!values.empty()) {
        values.clear();
        Changed(REG_NOTIFY_CHANGE_LAST_SET);
    }
}

const RegistryValue* KeyNode::Value(std::string_view name) const {
    const auto found = values.find(name);
    return found != values.end() ? &found->second : nullptr;
}

void KeyNode::SetValue(std::string_view name, RegistryValue value) {
    values.insert_or_assign(std::string(name), std::move(value));
    Changed(REG_NOTIFY_CHANGE_LAST_SET);
}

bool KeyNode::DeleteValue(std::string_view name) {
    const auto found = values.find(name);
    if (found == values.end()) {
        return false;
    }
    values.erase(found);
    Changed(REG_NOTIFY_CHANGE_LAST_SET);
    return true;
}

void KeyNode::Watch(const OpenKey& asker, Interest interest, std::shared_ptr<Event> event) {
    watches.push_back({&asker, interest, std::move(event)});
}

void KeyNode::EndWatches(const OpenKey& asker) {
    TakeAndSignal([&asker](const WatchEntry& watch) { return watch.asker == &asker; });
}

void KeyNode::MarkDeleted() {
    isDeleted = true;
    parent = nullptr;
    for (const auto& [name, child] : children) {
        child->MarkDeleted();
    }
    TakeAndSignal([](const WatchEntry& /*watch*/) { return true; });
}

void KeyNode::Changed(DWORD kind) {
    SignalWatches(kind, true);
    for (KeyNode* above = parent; above != nullptr; above = above->parent) {
        above->SignalWatches(kind, false);
    }
}

void KeyNode::SignalWatches(DWORD kind, bool isOwn) {
    TakeAndSignal([=](const WatchEntry& watch) {
        return (watch.interest.filter & kind) != 0 && (isOwn || watch.interest.subtree);
    });
}

// A caller that was told of a change, and has reset the event, must not be told of the same change again by an older
// request.
template <class Condition>
void KeyNode::TakeAndSignal(const Condition& isMeant) {
    std::set<std::shared_ptr<Event>> events;
    watches.remove_if([&](const WatchEntry& watch) {
        const bool isTaken = isMeant(watch);
        if (isTaken) {
            events.insert(watch.event);
        }
        return isTaken;
    });
    for (const auto& event : events) {
        event->Signal();
    }
}

}  // namespace win32
