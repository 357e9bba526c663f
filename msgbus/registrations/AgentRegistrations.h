#pragma once

#include <map>
#include <optional>
#include <string>

#include "agent/ny_agent.h"
#include "base/OwnerLock.h"

namespace bridge {

// The product ids that one service object has registered with the agent; what all service objects share of registering.
//
// The lock is not held while the agent is called: the agent may call back, and a callback that enters or leaves the
// bridge comes here. So one thread at a time is in the agent for a product. A thread that wants something else for that
// product meanwhile only says so; the one in the agent sees it when it is back, and does it.
class AgentRegistrations {
public:
    // Makes the agent calls. Both answer the agent's code.
    class Agent {
    public:
        virtual ~Agent() = default;
        virtual int32_t Register(const std::string& productId) = 0;
        virtual int32_t Unregister(const std::string& productId) = 0;
    };

    explicit AgentRegistrations(Agent& agentToCall) noexcept : agent(agentToCall) {}

    // Registers a product that is not registered. Raises the agent exception with the code of a refusal. Does nothing
    // once Close was called.
    void Add(const std::string& productId) { Change(productId, true); }

    // Unregisters a product that is registered; it stays, and the agent exception is raised, when the agent refuses.
    void Remove(const std::string& productId) { Change(productId, false); }

    // Registers nothing any more and unregisters each product that is left. Products that the agent does not let go of
    // stay; the first such code is raised when all were tried.
    void Close();

private:
    struct Product {
        bool isWanted = false;
        bool isRegistered = false;
        bool isBusy = false;       // a thread is in the agent for it
        bool mustBeTried = false;  // by Close
    };
    using Products = std::map<std::string, Product>;

    void Change(const std::string& productId, bool isWanted);
    // For the thread that has made the product busy: calls the agent until the product is as it is wanted, or until the
    // agent refuses that. The code of the last call that registers, or that unregisters, as `isAsked` says.
    int32_t Settle(Products::iterator product, bool isAsked);
    // No thread is in the agent for the product any more.
    void End(Products::iterator product) REQUIRES(lock);
    // A product that Close has not tried yet, made busy.
    std::optional<Products::iterator> TakeNextToTry();

    Agent& agent;
    OwnerLock lock;
    Products products GUARDED_BY(lock);
    Products::iterator nextToTry GUARDED_BY(lock) = products.end();  // where Close goes on
    bool isClosed GUARDED_BY(lock) = false;
};

}  // namespace bridge
