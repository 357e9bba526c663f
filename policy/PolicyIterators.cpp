#include "policy/PolicyIterators.h"

#include "dispatcher/groups/PolicyGroup.h"
#include "values/AgentException.h"

using corvane::ny::utils::Check;

namespace {

// Whether an iterator's answer came with an item.
bool HasItem(int32_t code) {
    if (code == NY_ITERATOR_END) {
        return false;
    }
    Check(code);
    return true;
}

}  // namespace

PolicyUris::PolicyUris(const PolicyFunctions& policyFunctions, ny_policy_bag_t* bag)
    : next(policyFunctions(agent::ny_policy_bag_uri_iterator_get_next)) {
    Check(policyFunctions(agent::ny_policy_bag_get_uri_iterator)(bag, iterator.Out(policyFunctions.Libraries())));
}

bool PolicyUris::Next(ny_policy_uri_t*& uri) {
    return HasItem(next(iterator.Get(), &uri));
}

PolicySections::PolicySections(const PolicyFunctions& policyFunctions, ny_policy_bag_t* bag, ny_policy_uri_t* uri)
    : next(policyFunctions(agent::ny_policy_bag_section_iterator_get_next)) {
    Check(policyFunctions(agent::ny_policy_bag_get_section_iterator)(bag, uri,
                                                                     iterator.Out(policyFunctions.Libraries())));
}

bool PolicySections::Next(const char*& section) {
    return HasItem(next(iterator.Get(), &section));
}

PolicySettings::PolicySettings(const PolicyFunctions& policyFunctions, ny_policy_bag_t* bag, ny_policy_uri_t* uri,
                               const char* section)
    : next(policyFunctions(agent::ny_policy_bag_setting_iterator_get_next)) {
    Check(policyFunctions(agent::ny_policy_bag_get_setting_iterator)(bag, uri, section,
                                                                     iterator.Out(policyFunctions.Libraries())));
}

bool PolicySettings::Next(const char*& name, ny_variant_t*& value) {
    return HasItem(next(iterator.Get(), &name, &value));
}
