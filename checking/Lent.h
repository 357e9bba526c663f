// Objects that the bridge lends to a module for one callback. The module is given an object of the checks instead,
// whose memory stays: a call that comes too late finds it, and is reported.
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

// The base of such objects. It knows the bridge's own object, an `Interface`, for as long as that is lent.
template <class Interface, LentFor lentFor>
class Lent {
public:
    // The same object may be lent again while it is lent: then End has to be called as often.
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

    // The bridge's object. Null, which is reported, when it is not lent any more.
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

// Makes such objects and keeps their memory for good. An object that was given back rests before it is lent again, so
// that a late call finds it not lent.
template <class Object>
class LentPool {
public:
    static LentPool& OfProcess() {
        static bridge::NoDestroyAtExit<LentPool> pool;
        return *pool;
    }

    Object* Take() {
        constexpr size_t mostRested = 256;  // objects
        const Guard guard(lock);
        if (rested.size() < mostRested) {
            all.push_back(std::make_unique<Object>());
            return all.back().get();
        }
        Object* const taken = rested.front();
        rested.pop_front();
        return taken;
    }
    // Callers cannot take an exception: without memory for this entry the object is not lent again.
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
