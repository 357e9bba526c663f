#include "msgbus/registrations/AgentRegistrations.h"

#include <algorithm>
#include <iterator>

#include "values/AgentException.h"

namespace bridge {

void AgentRegistrations::Change(const std::string& productId, bool isWanted) {
    Products::iterator product;
    {
        const ScopedLock guard(lock);
        if (isWanted && isClosed) {
            return;
        }
        product = isWanted ? products.try_emplace(productId).first : products.find(productId);
        if (product == products.end()) {
            return;
        }
        product->second.isWanted = isWanted;
        if (product->second.isRegistered == isWanted || product->second.isBusy) {
            return;
        }
        product->second.isBusy = true;
    }
    Check(Settle(product, isWanted));
}

void AgentRegistrations::Close() {
    {
        const ScopedLock guard(lock);
        isClosed = true;
        for (auto& [productId, product] : products) {
            product.isWanted = false;
            product.mustBeTried = true;
        }
        nextToTry = products.begin();
    }
    int32_t failure = NY_OK;
    while (const auto product = TakeNextToTry()) {
        const int32_t result = Settle(*product, false);
        failure = failure == NY_OK ? result : failure;
    }
    Check(failure);
}

std::optional<AgentRegistrations::Products::iterator> AgentRegistrations::TakeNextToTry() {
    const ScopedLock guard(lock);
    const auto isToTry = [](const auto& entry) {
        // The thread that is in the agent for a product ends its registration.
        return entry.second.mustBeTried && !entry.second.isBusy;
    };
    auto found = std::find_if(nextToTry, products.end(), isToTry);
    if (found == products.end()) {
        // Those that a thread was in the agent for as they were passed.
        found = std::find_if(products.begin(), products.end(), isToTry);
    }
    if (found == products.end()) {
        return std::nullopt;
    }
    nextToTry = std::next(found);
    found->second.mustBeTried = false;
    found->second.isBusy = true;
    return found;
}

int32_t AgentRegistrations::Settle(Products::iterator product, bool isAsked) {
    // No other thread removes a product that is busy.
    int32_t answer = NY_OK;
    for (;;) {
        bool isWanted = false;
        {
            const ScopedLock guard(lock);
            isWanted = product->second.isWanted;
            if (isWanted == product->second.isRegistered) {
                End(product);
                return answer;
            }
        }
        const int32_t result = isWanted ? agent.Register(product->first) : agent.Unregister(product->first);
        answer = isWanted == isAsked ? result : answer;
        const ScopedLock guard(lock);
        if (result == NY_OK) {
            product->second.isRegistered = isWanted;
        } else if (product->second.isWanted == isWanted) {
            product->second.isWanted = false;
            End(product);
            return answer;
        }
    }
}

void AgentRegistrations::End(Products::iterator product) {
    product->second.isBusy = false;
    if (!product->second.isRegistered) {
        nextToTry = nextToTry == product ? std::next(product) : nextToTry;
        products.erase(product);
    }
}

}  // namespace bridge
