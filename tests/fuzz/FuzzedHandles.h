// The fuzzed agent's objects, and the account of those that are alive.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "agent/ny_agent.h"
#include "fuzz/FuzzInput.h"

struct FuzzedObject {
    FuzzedObject() = default;
    virtual ~FuzzedObject() = default;
    FuzzedObject(const FuzzedObject&) = delete;
    FuzzedObject& operator=(const FuzzedObject&) = delete;
};

struct ny_buffer : FuzzedObject {
    std::vector<unsigned char> bytes;  // and a zero behind them
};
struct ny_wbuffer : FuzzedObject {
    std::vector<wchar_t> units;  // and a zero behind them
};
struct ny_variant : FuzzedObject {
    enum class Kind { Narrow, Wide, Table };
    Kind kind = Kind::Narrow;
    std::vector<char> narrow = {'\0'};
    std::wstring wide;
};
struct ny_table : FuzzedObject {
    std::vector<std::string> keys;
};
struct ny_array : FuzzedObject {
    std::vector<std::string> elements;
};
struct ny_policy_uri : FuzzedObject {
    std::vector<std::unique_ptr<ExactText<char>>> texts;  // that were given out
};
struct ny_policy_bag : FuzzedObject {};
struct ny_policy_bag_iterator : FuzzedObject {
    ~ny_policy_bag_iterator() override { DropItem(); }
    void DropItem() noexcept;

    unsigned given = 0;
    ny_policy_uri* uri = nullptr;
    ny_variant* value = nullptr;
    std::unique_ptr<ExactText<char>> text;
};
struct ny_property_bag : FuzzedObject {};
struct ny_msgbus : FuzzedObject {};

// A refusal that an agent owes its caller, such as for a null handle.
struct Refusal {
    int32_t code;
};

// Every handle that is alive, whether the bridge owns it or was lent it. The process ends when the bridge names a
// handle that is not alive, or gives one back that it does not own.
class FuzzedHandles {
public:
    template <class Object>
    Object* Own(std::unique_ptr<Object> object) {
        return Keep(std::move(object), 1, false);
    }
    template <class Object>
    Object* Lend(std::unique_ptr<Object> object) {
        return Keep(std::move(object), 0, true);
    }
    // The agent's own part of it: it lives on as long as the bridge holds it. Null is accepted.
    void EndLoan(FuzzedObject* object) noexcept;

    void AddReference(FuzzedObject* object);
    void Release(FuzzedObject* object);
    // Raises Refusal for null.
    void Require(const FuzzedObject* object) const;

    // The process ends when the bridge still holds one. All are gone then.
    void ExpectNoneHeld();

private:
    struct Entry {
        std::unique_ptr<FuzzedObject> object;
        unsigned references = 0;
        bool isLent = false;
    };

    template <class Object>
    Object* Keep(std::unique_ptr<Object> object, unsigned references, bool isLent) {
        Object* const kept = object.get();
        entries[kept] = {std::move(object), references, isLent};
        return kept;
    }
    Entry& Find(FuzzedObject* object);

    std::map<const FuzzedObject*, Entry> entries;
};
