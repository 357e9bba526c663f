#include "dispatcher/AgentCalls.h"

#include <windows.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <tuple>
#include <utility>

#include "base/Boundary.h"
#include "base/Mutex.h"
#include "base/NoDestroyAtExit.h"
#include "base/ThreadNumber.h"
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
    std::shared_ptr<void> called;  // null for a name that has ended, which stands for no other product any more
    const void* group = nullptr;
};

// How many calls from the agent each thread is inside.
NoDestroyAtExit<ThreadNumber> callDepth;

constexpr size_t cacheLineSize = 64;

// A part of the table. The lock is held for a look-up or a change alone. Objects that an entry shared are let go of
// without it.
struct alignas(cacheLineSize) Part {
    Mutex lock;
    std::map<Name, Entry, Before> entries GUARDED_BY(lock);
};

// The products are spread over the parts, so that calls for different products on different threads seldom meet.
constexpr size_t partCount = 16;

std::array<Part, partCount>& Table() noexcept {
    static NoDestroyAtExit<std::array<Part, partCount>> table;
    return *table;
}

Part& PartOf(std::string_view product) noexcept {
    return Table()[std::hash<std::string_view>{}(product) % partCount];
}

// Looks up exactly this name. The object that is admitted under it, null when the name has ended; nullopt when there is
// no such name.
std::optional<std::shared_ptr<void>> FindNamed(const AgentCallData& data, std::string_view product) noexcept {
    Part& part = PartOf(product);
    const ScopedLock guard(part.lock);
    const auto found = part.entries.find(View(data, product));
    return found != part.entries.end() ? std::optional(found->second.called) : std::nullopt;
}

// Forgets one name of the group. False when there is none.
bool ForgetOne(Part& part, const void* group) noexcept {
    decltype(part.entries)::node_type forgotten;
    const ScopedLock guard(part.lock);
    const auto found = std::find_if(part.entries.begin(), part.entries.end(),
                                    [group](const auto& entry) { return entry.second.group == group; });
    if (found != part.entries.end()) {
        forgotten = part.entries.extract(found);
    }
    return static_cast<bool>(forgotten);
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
    callDepth->Prepare();
    Part& part = PartOf(product);
    Name name(View(data, product));
    // A share of the name's own: calls for different products count no references in one place.
    Entry entry{std::make_shared<std::shared_ptr<void>>(std::move(called)), group};
    const ScopedLock guard(part.lock);
    std::swap(part.entries.try_emplace(std::move(name)).first->second, entry);
}

void EndAgentCalls(const AgentCallData& data, std::string_view product) noexcept {
    Part& part = PartOf(product);
    std::shared_ptr<void> ended;
    const ScopedLock guard(part.lock);
    const auto found = part.entries.find(View(data, product));
    if (found != part.entries.end()) {
        ended.swap(found->second.called);
    }
}

void ForgetAgentCalls(const void* group) noexcept {
    for (Part& part : Table()) {
        while (ForgetOne(part, group)) {
        }
    }
}

std::shared_ptr<void> FindAgentCalls(const AgentCallData& data, std::string_view product) noexcept {
    if (auto named = FindNamed(data, product)) {
        return *std::move(named);
    }
    return FindNamed(data, {}).value_or(nullptr);
}

AgentCall::AgentCall(const AgentCallData& data, std::string_view product) noexcept
    : depthAround(callDepth->Get()),
      isCounted(callDepth->Set(depthAround + 1)),
      called(isCounted ? FindAgentCalls(data, product) : nullptr) {}

AgentCall::~AgentCall() {
    // First: what this ends must know that it is ended on a thread of the agent's.
    called.reset();
    if (isCounted) {
        callDepth->Set(depthAround);
    }
}

bool AgentCall::IsUnderWay() noexcept {
    return callDepth->Get() != 0;
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
