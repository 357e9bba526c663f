#include "simulator/core/client/ClientTable.h"

#include <utility>

namespace simulator {

namespace {

ClientTable& theClients = *new ClientTable;

}  // namespace

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

ClientTable& TheClients() {
    return theClients;
}

}  // namespace simulator
