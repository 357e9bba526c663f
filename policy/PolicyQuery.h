#pragma once

#include "policy/PolicyFunctions.h"
#include "policy/PolicyHandles.h"

namespace bridge {

// A question to the agent for the policies of a product, of the machine or of one user. Every operation raises the
// agent exception with the code of a call that did not succeed.
class PolicyQuery {
public:
    explicit PolicyQuery(const PolicyFunctions& policyFunctions);

    // Both texts are UTF-8. Without a user the machine's policies are meant.
    void SetProduct(const char* productId);
    void SetUser(const char* user);

    // The policies that the agent holds now.
    PolicyBagOwner Fetch(ny_client_t* client) const;

private:
    const PolicyFunctions& functions;
    PolicyUriOwner uri;
};

}  // namespace bridge
