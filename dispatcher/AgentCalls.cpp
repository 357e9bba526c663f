#include "dispatcher/AgentCalls.h"

#include <algorithm>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <tuple>
#include <utility>

#include "base/Boundary.h"
#include "base/Mutex.h"
#include "base/NoDestroyAtExit.h"
#include "base/UniqueHandle.h"

namespace bridge {

namespace {

// The data's address and type, and the product. A look-up by view allocates nothing.
using Name = std::tuple<uintptr_t, uintptr_t, std::string>;
using NameView = std::tuple<uintptr_t, uintptr_t, std::string_view>;

NameView View(const AgentCallData& data, std::string_view product) noexcept {
    return {reinterpret_cast<uintptr_t>(data.address), reinterpret_cast<uintptr_t>(data.type), product};
}

struct Before {
    using is_transparent = void;
    template <class One, class Other>
    bool operator()(const One& one, const Other& other) const noexcept {
        return NameView(one) < NameView(other);
    }
};

struct Entry {
    std::shared_ptr<void> called;
    const void* group = nullptr;
    bool isAdmitted = false;  // false for a name that has ended, which stands for no other product any more
};

}  // namespace

// The lock is held for a look-up or a change alone. Objects that an entry shared are let go of without it.
struct AgentCallTable {
    Mutex lock;
    std::map<Name, Entry, Before> entries GUARDED_BY(lock);
    AgentCall* underWay GUARDED_BY(lock) = nullptr;

    // The entry that serves a call with this data for this product; null when the call comes too late.
    const Entry* Find(const AgentCallData& data, std::string_view product) const noexcept REQUIRES(lock) {
        auto found = entries.find(View(data, product));
        if (found == entries.end() && !product.empty()) {
            found = entries.find(View(data, {}));
        }
        return found != entries.end() && found->second.isAdmitted ? &found->second : nullptr;
    }

    void Begin(AgentCall& call, const AgentCallData& data, std::string_view product) noexcept {
        const ScopedLock guard(lock);
        if (const Entry* const entry = Find(data, product)) {
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
        const ScopedLock guard(lock);
        (call.previous != nullptr ? call.previous->next : underWay) = call.next;
        if (call.next != nullptr) {
            call.next->previous = call.previous;
        }
    }

    bool HasCallOn(DWORD threadId) noexcept {
        const ScopedLock guard(lock);
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
    static NoDestroyAtExit<AgentCallTable> table;
    return *table;
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
    Name name(View(data, product));
    Entry entry{std::move(called), group, true};
    const ScopedLock guard(table.lock);
    std::swap(table.entries.try_emplace(std::move(name)).first->second, entry);
}

void EndAgentCalls(const AgentCallData& data, std::string_view product) noexcept {
    AgentCallTable& table = Table();
    std::shared_ptr<void> ended;
    const ScopedLock guard(table.lock);
    const auto found = table.entries.find(View(data, product));
    if (found != table.entries.end()) {
        found->second.isAdmitted = false;
        ended.swap(found->second.called);
    }
}

void ForgetAgentCalls(const void* group) noexcept {
    AgentCallTable& table = Table();
    decltype(table.entries)::node_type forgotten;
    do {
        forgotten = {};
        const ScopedLock guard(table.lock);
        const auto found = std::find_if(table.entries.begin(), table.entries.end(),
                                        [group](const auto& entry) { return entry.second.group == group; });
        if (found != table.entries.end()) {
            forgotten = table.entries.extract(found);
        }
    } while (forgotten);
}

std::shared_ptr<void> FindAgentCalls(const AgentCallData& data, std::string_view product) noexcept {
    AgentCallTable& table = Table();
    const ScopedLock guard(table.lock);
    const Entry* const entry = table.Find(data, product);
    return entry != nullptr ? entry->called : nullptr;
}

AgentCall::AgentCall(const AgentCallData& data, std::string_view product) noexcept : threadId(::GetCurrentThreadId()) {
    Table().Begin(*this, data, product);
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
        if (const UniqueHandle thread{::CreateThread(nullptr, 0, RunWork, started.get(), 0, nullptr)}) {
            static_cast<void>(started.release());
        }
    });
}

}  // namespace bridge
