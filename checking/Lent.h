// Objects that the bridge lends to a module for one callback. The module is given one of the checks' instead, whose
// memory stays: a call that comes too late finds it, and is told of.
#pragma once

#include <windows.h>

#include <atomic>
#include <deque>
#include <memory>
#include <string>

#include "base/NoDestroyAtExit.h"
#include "checking/Findings.h"
#include "checking/StateLock.h"

namespace checking {

enum class LentFor { AnyThread, OwnThread };

// A base of such objects: knows `Interface`, the bridge's own object, for as long as it is lent.
template <class Interface, LentFor lentFor>
class Lent {
public:
    // May be lent again, the same object, while it is: as often it has to end.
    void Begin(Interface* bridgeObject, const std::string& id, const char* callback) {
        ownerId = id;
        function = callback;
        thread = ::GetCurrentThreadId();
        object.store(bridgeObject);
        ++loans;
    }
    void End() noexcept { --loans; }
    void EndAll() noexcept { loans.store(0); }

protected:
    ~Lent() = default;

    // Null, which is reported, when it is not lent any more.
    Interface* Use(const char* operation) {
        Interface* const usable = loans.load() > 0 ? object.load() : nullptr;
        if (usable == nullptr) {
            Report(Rule::LentKept, ownerId, {operation, function});
        } else if (lentFor == LentFor::OwnThread && ::GetCurrentThreadId() != thread) {
            Report(Rule::LentOtherThread, ownerId, {operation, function});
        }
        return usable;
    }
    const std::string& ProductId() const noexcept { return ownerId; }

private:
    std::atomic<Interface*> object = nullptr;
    std::atomic<int> loans = 0;
    std::string ownerId;
    const char* function = "";
    DWORD thread = 0;
};

// Where the memory of such objects comes from, and stays. One that was given back rests while many others are lent.
template <class Object>
class LentPool {
public:
    static LentPool& OfProcess() {
        static bridge::NoDestroyAtExit<LentPool> pool;
        return *pool;
    }

    Object* Take() {
        constexpr size_t resting = 256;
        const Guard guard(lock);
        if (rested.size() < resting) {
            all.push_back(std::make_unique<Object>());
            return all.back().get();
        }
        Object* const taken = rested.front();
        rested.pop_front();
        return taken;
    }
    // Called where nothing may be thrown: without memory to note it, the object is not lent again.
    void GiveBack(Object* object) noexcept {
        const Guard guard(lock);
        bridge::Guarded([&] { rested.push_back(object); });
    }

private:
    StateLock lock;
    std::deque<std::unique_ptr<Object>> all GUARDED_BY(lock);
    std::deque<Object*> rested GUARDED_BY(lock);
};

// Lends the bridge's object from construction to destruction.
template <class Object>
class Loan {
public:
    template <class Interface>
    Loan(Interface* bridgeObject, const std::string& productId, const char* callback)
        : object(LentPool<Object>::OfProcess().Take()) {
        object->Begin(bridgeObject, productId, callback);
    }
    ~Loan() {
        object->End();
        LentPool<Object>::OfProcess().GiveBack(object);
    }
    Loan(const Loan&) = delete;
    Loan& operator=(const Loan&) = delete;

    Object* Get() const noexcept { return object; }

private:
    Object* const object;
};

}  // namespace checking
