// Bags of policies and the iterators over them.
#include "simulator/core/frame/Simulate.h"
#include "simulator/core/handles/HandleTable.h"
#include "simulator/core/ny_core.h"
#include "simulator/core/policy/PolicyIterator.h"
#include "simulator/core/policy/PolicyUri.h"

using namespace simulator;

namespace {

// Throws Failure for an iterator of another kind.
template <class Iterator>
std::shared_ptr<Iterator> Get(ny_policy_bag_iterator_t* handle) {
    auto iterator = std::dynamic_pointer_cast<Iterator>(Handles().Get(handle));
    Require(iterator != nullptr);
    return iterator;
}

}  // namespace

int32_t ny_core_policy_get(ny_client_t* client, ny_policy_uri_t* uri, ny_policy_bag_t** out) {
    return Simulate("ny_policy_get", [&] {
        static_cast<void>(Handles().Get(client));
        const auto wanted = Handles().Get(uri);
        Require(out != nullptr);
        *out = Handles().Own<ny_policy_bag_t>(std::make_shared<PolicyBag>(PolicyBag{wanted->Find()}));
    });
}

int32_t ny_core_policy_bag_release(ny_policy_bag_t* bag) {
    return Simulate("ny_policy_bag_release", [&] { Handles().Release(bag); });
}

int32_t ny_core_policy_bag_get_uri_iterator(ny_policy_bag_t* bag, ny_policy_bag_iterator_t** out) {
    return Simulate("ny_policy_bag_get_uri_iterator", [&] {
        const auto source = Handles().Get(bag);
        Require(out != nullptr);
        *out = Handles().Own<ny_policy_bag_iterator_t>(std::make_shared<UriIterator>(source));
    });
}

int32_t ny_core_policy_bag_get_section_iterator(ny_policy_bag_t* bag, ny_policy_uri_t* uri,
                                                ny_policy_bag_iterator_t** out) {
    return Simulate("ny_policy_bag_get_section_iterator", [&] {
        const auto policy = Handles().Get(uri)->PolicyOf(Handles().Get(bag));
        Require(out != nullptr);
        *out = Handles().Own<ny_policy_bag_iterator_t>(std::make_shared<SectionIterator>(policy));
    });
}

int32_t ny_core_policy_bag_get_setting_iterator(ny_policy_bag_t* bag, ny_policy_uri_t* uri, const char* section,
                                                ny_policy_bag_iterator_t** out) {
    return Simulate("ny_policy_bag_get_setting_iterator", [&] {
        const auto policy = Handles().Get(uri)->PolicyOf(Handles().Get(bag));
        Require(out != nullptr);
        *out = Handles().Own<ny_policy_bag_iterator_t>(std::make_shared<SettingIterator>(policy, section));
    });
}

int32_t ny_core_policy_bag_uri_iterator_get_next(ny_policy_bag_iterator_t* iterator, ny_policy_uri_t** uri) {
    return Simulate("ny_policy_bag_uri_iterator_get_next", [&] {
        const auto uris = Get<UriIterator>(iterator);
        Require(uri != nullptr);
        *uri = uris->Next();
    });
}

int32_t ny_core_policy_bag_section_iterator_get_next(ny_policy_bag_iterator_t* iterator, const char** section) {
    return Simulate("ny_policy_bag_section_iterator_get_next", [&] {
        const auto sections = Get<SectionIterator>(iterator);
        Require(section != nullptr);
        *section = sections->Next();
    });
}

int32_t ny_core_policy_bag_setting_iterator_get_next(ny_policy_bag_iterator_t* iterator, const char** name,
                                                     ny_variant_t** value) {
    return Simulate("ny_policy_bag_setting_iterator_get_next", [&] {
        const auto settings = Get<SettingIterator>(iterator);
        Require(name != nullptr && value != nullptr);
        std::tie(*name, *value) = settings->Next();
    });
}

int32_t ny_core_policy_bag_iterator_release(ny_policy_bag_iterator_t* iterator) {
    return Simulate("ny_policy_bag_iterator_release", [&] { Handles().Release(iterator); });
}
