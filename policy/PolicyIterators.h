// The agent's iterators over a bag of policies. Each opens its iterator when it is made and releases it at its end;
// Next gives the next item, borrowed until the next one is asked for, or false after the last one. All raise the agent
// exception with the code of a call that did not succeed.
#pragma once

#include "policy/PolicyFunctions.h"
#include "policy/PolicyHandles.h"

// The policies of a bag.
class PolicyUris {
public:
    PolicyUris(const PolicyFunctions& policyFunctions, ny_policy_bag_t* bag);
    bool Next(ny_policy_uri_t*& uri);

private:
    int32_t (*next)(ny_policy_bag_iterator_t* iterator, ny_policy_uri_t** uri);  // the agent's
    PolicyIteratorOwner iterator;
};

// The sections of a policy. A name may be null.
class PolicySections {
public:
    PolicySections(const PolicyFunctions& policyFunctions, ny_policy_bag_t* bag, ny_policy_uri_t* uri);
    bool Next(const char*& section);

private:
    int32_t (*next)(ny_policy_bag_iterator_t* iterator, const char** section);  // the agent's
    PolicyIteratorOwner iterator;
};

// The settings of a section. Name and value may be null.
class PolicySettings {
public:
    PolicySettings(const PolicyFunctions& policyFunctions, ny_policy_bag_t* bag, ny_policy_uri_t* uri,
                   const char* section);
    bool Next(const char*& name, ny_variant_t*& value);

private:
    int32_t (*next)(ny_policy_bag_iterator_t* iterator, const char** name, ny_variant_t** value);  // the agent's
    PolicyIteratorOwner iterator;
};
