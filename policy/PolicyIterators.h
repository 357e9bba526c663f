// The agent's iterators over a bag of policies.
#pragma once

#include "base/Attributes.h"
#include "policy/PolicyFunctions.h"
#include "policy/PolicyHandles.h"
#include "values/AgentException.h"

namespace bridge {

// Opens an iterator of the agent's when it is made and releases it at its end. Both raise the agent exception with the
// code of a call that did not succeed.
template <class... Items>
class PolicyIterator {
public:
    // Opened by `open` for `place`, the bag and where in it; `getNext` is the agent's function for the next item.
    template <class Open, class GetNext, class... Place>
    PolicyIterator(const PolicyFunctions& functions, const Open& open, const GetNext& getNext, const Place&... place)
        : next(functions(getNext)) {
        Check(functions(open)(place..., iterator.Out(functions.Libraries())));
    }

    // Gives the next item, borrowed until the next one is asked for; false after the last one. In its callers its
    // failures would slow down the loop over settings.
    NEVER_INLINED bool Next(Items&... items) {
        const int32_t code = next(iterator.Get(), &items...);
        if (code == NY_ITERATOR_END) {
            return false;
        }
        Check(code);
        return true;
    }

private:
    int32_t (*next)(ny_policy_bag_iterator_t* iterator, Items*... items);
    PolicyIteratorOwner iterator;
};

// The policies of a bag; the sections of a policy, by name; the settings of a section, each a name and a value. Names
// and values may be null.
using PolicyUris = PolicyIterator<ny_policy_uri_t*>;
using PolicySections = PolicyIterator<const char*>;
using PolicySettings = PolicyIterator<const char*, ny_variant_t*>;

}  // namespace bridge
