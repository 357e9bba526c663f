#include "ClientTable.h"

#include <utility>

namespace simulator {

void ClientTable::Add(std::shared_ptr<Client> client) {
    const std::lock_guard lock(mutex);
    clients.push_back(std::move(client));
}

void ClientTable::Remove(const std::shared_ptr<Client>& client) {
    const std::lock_guard lock(mutex);
    std::erase(clients, client);
}

ClientTable::Clients ClientTable::All() const {
    const std::lock_guard lock(mutex);
    return clients;
}

}  // namespace simulator
