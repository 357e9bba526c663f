#include "msgbus/AgentRegistrations.h"

#include <algorithm>
#include <utility>

std::list<std::string>::iterator AgentRegistrations::Find(const std::string& productId) {
    return std::find(products.begin(), products.end(), productId);
}

bool AgentRegistrations::Take(const std::string& productId, std::list<std::string>& taken) {
    const std::lock_guard guard(lock);
    const auto found = Find(productId);
    if (found == products.end()) {
        return false;
    }
    taken.splice(taken.end(), products, found);
    return true;
}

std::list<std::string> AgentRegistrations::TakeAllAndClose() {
    const std::lock_guard guard(lock);
    isClosed = true;
    return std::exchange(products, {});
}

void AgentRegistrations::PutBack(std::list<std::string>& returned) noexcept {
    const std::lock_guard guard(lock);
    products.splice(products.end(), returned);
}
