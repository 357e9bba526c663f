#pragma once

#include <list>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "Waitable.h"
#include "win32/registry.h"

namespace win32 {

class OpenKey;

// Of which changes somebody wants to be told.
struct Interest {
    bool subtree;
    DWORD filter;
};

// One lock for the whole registry: every use of a KeyNode is made under it.
std::mutex& RegistryLock();

// Orders names without their case.
struct NameLess {
    using is_transparent = void;
    bool operator()(std::string_view left, std::string_view right) const;
};

struct RegistryValue {
    DWORD type = REG_NONE;
    std::vector<BYTE> data;
};

// A key of the registry, with its values, the keys below it, and the requests to be told of a change.
class KeyNode {
public:
    explicit KeyNode(KeyNode* parentKey = nullptr) : parent(parentKey) {}

    bool IsDeleted() const { return isDeleted; }
    bool HasChildren() const { return !children.empty(); }

    std::shared_ptr<KeyNode> Child(std::string_view name) const;
    std::shared_ptr<KeyNode> AddChild(std::string_view name);
    // Deletes this key and everything below it. Fails with ERROR_ACCESS_DENIED for a root.
    void Delete();
    // Deletes everything below this key, and its values.
    void Clear();

    const RegistryValue* Value(std::string_view name) const;
    void SetValue(std::string_view name, RegistryValue value);
    bool DeleteValue(std::string_view name);

    // Signals the event at the next change, once.
    void Watch(const OpenKey& asker, Interest interest, std::shared_ptr<Event> event);
    // Signals the requests that were made through this key, which is closed now.
    void EndWatches(const OpenKey& asker);

private:
    struct WatchEntry {
        const OpenKey* asker;
        Interest interest;
        std::shared_ptr<Event> event;
    };

    void MarkDeleted();
    void Changed(DWORD kind);
    void SignalWatches(DWORD kind, bool isOwn);
    // Takes the watches that `isMeant` chooses and sets their events, each once.
    template <class Condition>
    void TakeAndSignal(const Condition& isMeant);

    KeyNode* parent;
    bool isDeleted = false;
    std::map<std::string, std::shared_ptr<KeyNode>, NameLess> children;
    std::map<std::string, RegistryValue, NameLess> values;
    std::list<WatchEntry> watches;
};

}  // namespace win32
