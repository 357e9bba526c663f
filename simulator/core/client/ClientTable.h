// The clients that were created and not yet released.
#pragma once

#include <memory>
#include <mutex>
#include <vector>

namespace simulator {

class Client;

class ClientTable {
public:
    using Clients = std::vector<std::shared_ptr<Client>>;

    void Add(std::shared_ptr<Client> client);
    void Remove(const std::shared_ptr<Client>& client);
    // A copy, so that the caller walks the clients with no lock held.
    Clients All() const;

private:
    mutable std::mutex mutex;
    Clients clients;
};

// The one table of this process; lives as TheFrame does.
ClientTable& TheClients();

}  // namespace simulator
