#include "policy/PolicyQuery.h"

#include "dispatcher/groups/PolicyGroup.h"
#include "values/AgentException.h"

namespace bridge {

PolicyQuery::PolicyQuery(const PolicyFunctions& policyFunctions) : functions(policyFunctions) {
    Check(functions(agent::ny_policy_uri_create)(uri.Out(functions.Libraries())));
}

void PolicyQuery::SetProduct(const char* productId) {
    Check(functions(agent::ny_policy_uri_set_software_id)(uri.Get(), productId));
}

void PolicyQuery::SetUser(const char* user) {
    Check(functions(agent::ny_policy_uri_set_user)(uri.Get(), user));
}

PolicyBagOwner PolicyQuery::Fetch(ny_client_t* client) const {
    PolicyBagOwner bag;
    Check(functions(agent::ny_policy_get)(client, uri.Get(), bag.Out(functions.Libraries())));
    return bag;
}

}  // namespace bridge
