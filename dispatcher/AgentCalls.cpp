#include "dispatcher/AgentCalls.h"

#include <algorithm>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "base/Boundary.h"
#include "base/Mutex.h"
#include "base/UntilUnloaded.h"

namespace {

// Look-ups by view: finding what is admitted allocates nothing.
struct NameView {
    AgentCallData data;
    std::string_view product;
};

struct Name {
    AgentCallData data;
    std::string product;
};

NameView View(const Name& name) noexcept {
    return {name.data, name.product};
}
NameView View(const NameView& name) noexcept {
    return name;
}

NameView WithoutAddress(const NameView& name) noexcept {
    return {{nullptr, name.data.type}, name.product};
}

struct Hash {
    using is_transparent = void;
    template <class AnyName>
    size_t operator()(const AnyName& name) const noexcept {
        const NameView view = View(name);
        return std::hash<std::string_view>{}(view.product) ^ std::hash<const void*>{}(view.data.address);
    }
};

struct Equal {
    using is_transparent = void;
    template <class AnyName, class OtherName>
    bool operator()(const AnyName& name, const OtherName& other) const noexcept {
        const NameView one = View(name);
        const NameView two = View(other);
        return one.data.address == two.data.address && one.data.type == two.data.type && one.product == two.product;
    }
};

struct Entry {
    std::shared_ptr<void> called;
    const void* group = nullptr;
};

}  // namespace

// The lock is held for a look-up or a change alone. What was shared is let go after it was left.
struct AgentCallTable {
    Mutex lock;
    std::unordered_map<Name, Entry, Hash, Equal> entries;
    // The products that were ever admitted by their own name, without an address: few, and kept for good.
    std::unordered_set<Name, Hash, Equal> known;
    AgentCall* underWay = nullptr;

    using Ended = decltype(entries)::node_type;

    // The entry, out of the table; an empty one when it was not found.
    Ended Take(decltype(entries)::const_iterator found) noexcept {
        return found != entries.end() ? entries.extract(found) : Ended();
    }

    // The entry that serves a call with this data for this product; null when the call comes too late.
    const Entry* Find(const NameView& name) const noexcept {
        auto found = entries.find(name);
        if (found == entries.end() && !name.product.empty() && !known.contains(WithoutAddress(name))) {
            found = entries.find(NameView{name.data, {}});
        }
        return found != entries.end() ? &found->second : nullptr;
    }

    void Begin(AgentCall& call, const NameView& name) noexcept {
        const std::lock_guard guard(lock);
        if (const Entry* const entry = Find(name)) {
            call.isAdmitted = true;
            call.called = entry->called;
        }
        call.next = underWay;
        if (underWay != nullptr) {
            underWay->previous = &call;
        }
        underWay = &call;
    }

    void End(AgentCall& call) noexcept {
        const std::lock_guard guard(lock);
        (call.previous != nullptr ? call.previous->next : underWay) = call.next;
        if (call.next != nullptr) {
            call.next->previous = call.previous;
        }
    }

    bool HasCallOn(DWORD threadId) noexcept {
        const std::lock_guard guard(lock);
        for (const AgentCall* call = underWay; call != nullptr; call = call->next) {
            if (call->threadId == threadId) {
                return true;
            }
        }
        return false;
    }
};

namespace {

AgentCallTable& Table() noexcept {
    static UntilUnloaded<AgentCallTable> table;
    return table.Get();
}

struct Work {
    void (*run)(void*);
    void* argument;
};

DWORD WINAPI RunWork(void* parameter) {
    const std::unique_ptr<Work> work(static_cast<Work*>(parameter));
    work->run(work->argument);
    return 0;
}

}  // namespace

void AdmitAgentCalls(const AgentCallData& data, std::string_view product, std::shared_ptr<void> called,
                     const void* group) {
    AgentCallTable& table = Table();
    Name name{data, std::string(product)};
    Name knownName{{nullptr, data.type}, name.product};
    Entry entry{std::move(called), group};
    const std::lock_guard guard(table.lock);
    table.known.insert(std::move(knownName));
    std::swap(table.entries.try_emplace(std::move(name)).first->second, entry);
}

void EndAgentCalls(const AgentCallData& data, std::string_view product) noexcept {
    AgentCallTable& table = Table();
    AgentCallTable::Ended ended;
    const std::lock_guard guard(table.lock);
    ended = table.Take(table.entries.find(NameView{data, product}));
}

void ForgetAgentCalls(const void* group) noexcept {
    AgentCallTable& table = Table();
    AgentCallTable::Ended forgotten;
    do {
        forgotten = {};
        const std::lock_guard guard(table.lock);
        forgotten = table.Take(std::find_if(table.entries.begin(), table.entries.end(),
                                            [group](const auto& entry) { return entry.second.group == group; }));
    } while (forgotten);
}

std::shared_ptr<void> FindAgentCalls(const AgentCallData& data, std::string_view product) noexcept {
    AgentCallTable& table = Table();
    const std::lock_guard guard(table.lock);
    const Entry* const entry = table.Find({data, product});
    return entry != nullptr ? entry->called : nullptr;
}

AgentCall::AgentCall(const AgentCallData& data, std::string_view product) noexcept : threadId(::GetCurrentThreadId()) {
    Table().Begin(*this, {data, product});
}

AgentCall::~AgentCall() {
    // First: what this ends must know that it is ended on a thread of the agent's.
    called.reset();
    Table().End(*this);
}

bool AgentCall::IsUnderWay() noexcept {
    return Table().HasCallOn(::GetCurrentThreadId());
}

void RunOutsideAgentCalls(void (*work)(void* argument), void* argument) noexcept {
    if (!AgentCall::IsUnderWay()) {
        work(argument);
        return;
    }
    Guarded([=] {
        auto started = std::make_unique<Work>(Work{work, argument});
        if (const HANDLE thread = ::CreateThread(nullptr, 0, RunWork, started.get(), 0, nullptr)) {
            static_cast<void>(started.release());
            ::CloseHandle(thread);
        }
    });
}
