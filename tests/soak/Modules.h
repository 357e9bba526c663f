// The interfaces that the soak's modules register. They read whatever they are given, call the bridge from inside,
// throw now and then, and notice a call after their end.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "soak/Services.h"

// One object that a module registers. It may be destroyed when its Remove has returned.
class Registered {
public:
    Registered() = default;
    // No thread may be inside.
    virtual ~Registered();
    Registered(const Registered&) = delete;
    Registered& operator=(const Registered&) = delete;

    virtual void Set(const std::wstring& productId) = 0;
    virtual void Remove(const std::wstring& productId) = 0;

    uint64_t Calls() const { return calls; }
    // Called in each callback beside its work. To be set before Set.
    std::function<void()> whileInside;

protected:
    // Wraps one call of the module, on whatever thread: runs `work`, then `whileInside`; throws in one of sixteen.
    template <class Work>
    void Enter(Work&& work) {
        const Inside inside(*this);
        const uint64_t number = ++calls;
        work();
        if (whileInside) {
            whileInside();
        }
        if (number % 16 == 0) {
            throw static_cast<int>(number);
        }
    }

private:
    class Inside {
    public:
        explicit Inside(Registered& called);
        ~Inside();
        Inside(const Inside&) = delete;
        Inside& operator=(const Inside&) = delete;

    private:
        Registered& object;
    };

    static constexpr uint32_t aliveMark = 0x600D11FE;
    std::atomic<uint32_t> mark = aliveMark;
    std::atomic<uint32_t> threadsInside = 0;
    std::atomic<uint64_t> calls = 0;
};

std::unique_ptr<Registered> MakeRegistered(Service service);

// The calls of modules since the program began.
uint64_t CallsOfModules();
