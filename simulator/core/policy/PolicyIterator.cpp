#include "simulator/core/policy/PolicyIterator.h"

#include <algorithm>
#include <cstring>

#include "simulator/core/frame/Failure.h"
#include "simulator/core/policy/PolicyUri.h"

namespace simulator {

namespace {

template <class Item>
const Item& Take(const std::vector<Item>& items, size_t& next) {
    if (next >= items.size()) {
        throw Failure{NY_ITERATOR_END};
    }
    return items[next++];
}

const PolicySection& FindSection(const Policy& policy, const char* name) {
    const auto found = std::find_if(policy.sections.begin(), policy.sections.end(), [&](const PolicySection& section) {
        // Names are handed out up to their first zero, and compared so.
        return section.name.has_value() == (name != nullptr) &&
               (name == nullptr || std::strcmp(name, section.name->c_str()) == 0);
    });
    Require(found != policy.sections.end());
    return *found;
}

}  // namespace

ny_policy_uri_t* UriIterator::Next() {
    item.End();
    return item.Lend(std::make_shared<PolicyUri>(bag, Take(bag->policies, next)));
}

const char* SectionIterator::Next() {
    return TextOrNull(Take(policy->sections, next).name);
}

SettingIterator::SettingIterator(PolicyPointer walkedPolicy, const char* name)
    : policy(std::move(walkedPolicy)), section(FindSection(*policy, name)) {}

std::pair<const char*, ny_variant_t*> SettingIterator::Next() {
    item.End();
    const PolicySetting& setting = Take(section.settings, next);
    return {TextOrNull(setting.name), setting.value != nullptr ? item.Lend(setting.value) : nullptr};
}

}  // namespace simulator
