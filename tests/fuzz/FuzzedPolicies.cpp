// The fuzzed agent's policies.
#include "fuzz/FuzzedAgent.h"

namespace {

constexpr unsigned mostItems = 40;

int32_t GiveText(ny_policy_uri_t* uri, const char** text) {
    return Answer([=](FuzzedAgent& agent) {
        agent.handles.Require(uri);
        uri->texts.push_back(std::make_unique<ExactText<char>>(agent.input, agent.input.Text()));
        *text = uri->texts.back()->Get();
    });
}

int32_t GiveIterator(ny_policy_bag_t* bag, ny_policy_bag_iterator_t** out) {
    return Answer([=](FuzzedAgent& agent) {
        agent.handles.Require(bag);
        Give(agent, std::make_unique<ny_policy_bag_iterator>(), out);
    });
}

// Goes on to another item unless the iterator is at its end.
void GoOn(FuzzedAgent& agent, ny_policy_bag_iterator_t* iterator) {
    agent.handles.Require(iterator);
    iterator->DropItem();
    if (++iterator->given > mostItems || !agent.input.Often()) {
        throw Refusal{NY_ITERATOR_END};
    }
}

}  // namespace

int32_t ny_policy_uri_create(ny_policy_uri_t** out) {
    return Answer([=](FuzzedAgent& agent) { Give(agent, std::make_unique<ny_policy_uri>(), out); });
}

int32_t ny_policy_uri_add_ref(ny_policy_uri_t* uri) {
    return Answer([=](FuzzedAgent& agent) { agent.handles.AddReference(uri); });
}

int32_t ny_policy_uri_release(ny_policy_uri_t* uri) {
    return LetGo(uri);
}

int32_t ny_policy_uri_set_software_id(ny_policy_uri_t* uri, const char* id) {
    return Answer([=](FuzzedAgent& agent) {
        agent.handles.Require(uri);
        Touch(id);
    });
}

int32_t ny_policy_uri_set_user(ny_policy_uri_t* uri, const char* user) {
    return ny_policy_uri_set_software_id(uri, user);
}

int32_t ny_policy_uri_get_feature(ny_policy_uri_t* uri, const char** text) {
    return GiveText(uri, text);
}

// Often one whose name is kept in the registry.
int32_t ny_policy_uri_get_category(ny_policy_uri_t* uri, const char** text) {
    if (FuzzedAgent::Current().input.Often()) {
        *text = "QTP_BufferOverflow_Policies";
        return NY_OK;
    }
    return GiveText(uri, text);
}

int32_t ny_policy_uri_get_type(ny_policy_uri_t* uri, const char** text) {
    return GiveText(uri, text);
}

int32_t ny_policy_uri_get_name(ny_policy_uri_t* uri, const char** text) {
    return GiveText(uri, text);
}

int32_t ny_policy_uri_get_pso_name(ny_policy_uri_t* uri, const char** text) {
    return GiveText(uri, text);
}

int32_t ny_policy_uri_get_pso_param_int(ny_policy_uri_t* uri, const char** text) {
    return GiveText(uri, text);
}

int32_t ny_policy_uri_get_pso_param_str(ny_policy_uri_t* uri, const char** text) {
    return GiveText(uri, text);
}

int32_t ny_policy_uri_get_pso_digest(ny_policy_uri_t* uri, const char** text) {
    return GiveText(uri, text);
}

int32_t ny_policy_get(ny_client_t* client, ny_policy_uri_t* uri, ny_policy_bag_t** out) {
    return Answer([=](FuzzedAgent& agent) {
        agent.handles.Require(client);
        agent.handles.Require(uri);
        Give(agent, std::make_unique<ny_policy_bag>(), out);
    });
}

int32_t ny_policy_bag_release(ny_policy_bag_t* bag) {
    return LetGo(bag);
}

int32_t ny_policy_bag_get_uri_iterator(ny_policy_bag_t* bag, ny_policy_bag_iterator_t** out) {
    return GiveIterator(bag, out);
}

int32_t ny_policy_bag_get_section_iterator(ny_policy_bag_t* bag, ny_policy_uri_t* uri, ny_policy_bag_iterator_t** out) {
    if (uri != nullptr) {
        FuzzedAgent::Current().handles.Require(uri);
    }
    return GiveIterator(bag, out);
}

int32_t ny_policy_bag_get_setting_iterator(ny_policy_bag_t* bag, ny_policy_uri_t* uri, const char* section,
                                           ny_policy_bag_iterator_t** out) {
    Touch(section);
    return ny_policy_bag_get_section_iterator(bag, uri, out);
}

int32_t ny_policy_bag_uri_iterator_get_next(ny_policy_bag_iterator_t* iterator, ny_policy_uri_t** uri) {
    return Answer([=](FuzzedAgent& agent) {
        GoOn(agent, iterator);
        iterator->uri = agent.input.Rarely() ? nullptr : agent.handles.Lend(std::make_unique<ny_policy_uri>());
        *uri = iterator->uri;
    });
}

int32_t ny_policy_bag_section_iterator_get_next(ny_policy_bag_iterator_t* iterator, const char** section) {
    return Answer([=](FuzzedAgent& agent) {
        GoOn(agent, iterator);
        iterator->text = std::make_unique<ExactText<char>>(agent.input, agent.input.Text());
        *section = iterator->text->Get();
    });
}

int32_t ny_policy_bag_setting_iterator_get_next(ny_policy_bag_iterator_t* iterator, const char** name,
                                                ny_variant_t** value) {
    return Answer([=](FuzzedAgent& agent) {
        GoOn(agent, iterator);
        iterator->text =
            std::make_unique<ExactText<char>>(agent.input, agent.input.Often() ? "bopEnabled" : agent.input.Text());
        iterator->value = agent.input.Rarely() ? nullptr : agent.handles.Lend(agent.MakeVariant());
        *name = iterator->text->Get();
        *value = iterator->value;
    });
}

int32_t ny_policy_bag_iterator_release(ny_policy_bag_iterator_t* iterator) {
    return LetGo(iterator);
}

int32_t ny_policy_enforce(ny_client_t* client, const char* productId) {
    return Answer([=](FuzzedAgent& agent) {
        agent.handles.Require(client);
        Touch(productId);
    });
}
