#pragma once

#include <list>
#include <mutex>
#include <string>

#include "agent/ny_agent.h"
#include "base/CallGate.h"
#include "base/OwnerLock.h"
#include "values/AgentException.h"

// The product ids that one service object has registered with the agent; what all service objects share of registering.
//
// The lock is held while the agent registers, so that one product is registered once. It is not held while the agent
// unregisters: the agent then waits for callbacks that run on other threads, and a callback that enters or leaves the
// bridge comes here.
class AgentRegistrations {
public:
    // Has `callAgent()` register a product that is not registered and remembers it. Raises the agent exception with
    // the code that callAgent returns unless that is NY_OK. Does nothing once Close was called.
    template <class CallAgent>
    void Add(const std::string& productId, CallAgent&& callAgent) {
        std::list<std::string> added{productId};
        const std::lock_guard guard(lock);
        if (isClosed || Find(productId) != products.end()) {
            return;
        }
        corvane::ny::utils::Check(callAgent());
        products.splice(products.end(), added);
    }

    // Has `callAgent()` unregister a product that is registered and forgets it; remembers it again, and raises the
    // agent exception, when callAgent does not return NY_OK.
    template <class CallAgent>
    void Remove(const std::string& productId, CallAgent&& callAgent) {
        const CallGate::Call call(removals);
        std::list<std::string> removed;
        if (!Take(productId, removed)) {
            return;
        }
        const int32_t result = callAgent();
        if (result != NY_OK) {
            PutBack(removed);
            throw corvane::ny::utils::exception(result);
        }
    }

    // Registers nothing any more and has `callAgent(productId)` unregister each product that is left. Products that the
    // agent does not let go of stay; the first such code is raised. Returns when no Remove is in the agent any more, at
    // most after 15 seconds: the agent's libraries may be unloaded next.
    template <class CallAgent>
    void Close(CallAgent&& callAgent) {
        std::list<std::string> remaining = TakeAllAndClose();
        removals.WaitForOthers();
        // What such a Remove could not remove is back.
        remaining.splice(remaining.end(), TakeAllAndClose());
        int32_t failure = NY_OK;
        for (auto product = remaining.begin(); product != remaining.end();) {
            const auto current = product++;
            const int32_t result = callAgent(*current);
            if (result == NY_OK) {
                remaining.erase(current);
            } else if (failure == NY_OK) {
                failure = result;
            }
        }
        PutBack(remaining);
        corvane::ny::utils::Check(failure);
    }

private:
    std::list<std::string>::iterator Find(const std::string& productId);
    bool Take(const std::string& productId, std::list<std::string>& taken);
    std::list<std::string> TakeAllAndClose();
    void PutBack(std::list<std::string>& returned) noexcept;

    CallGate removals;
    OwnerLock lock;
    std::list<std::string> products;
    bool isClosed = false;
};
