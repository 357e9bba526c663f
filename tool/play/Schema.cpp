#include "tool/play/Schema.h"

#include "tool/play/Verbs.h"

namespace tool::play {

namespace {

using OrderedJson = nlohmann::ordered_json;

OrderedJson PatternSchema() {
    const OrderedJson expression = {{"type", "object"},
                                    {"properties", {{"matches", {{"type", "string"}}}}},
                                    {"required", OrderedJson::array({"matches"})},
                                    {"additionalProperties", false}};
    return {{"anyOf", OrderedJson::array({OrderedJson{{"type", "string"}}, expression})}};
}

OrderedJson ListOf(OrderedJson items) {
    return {{"type", "array"}, {"items", std::move(items)}};
}

OrderedJson TypeSchema(const Member& member) {
    switch (member.type) {
        case MemberType::Text: return {{"type", "string"}};
        case MemberType::Pattern: return PatternSchema();
        case MemberType::Count: return {{"type", "integer"}, {"minimum", 0}, {"maximum", 4294967295U}};
        case MemberType::Code: return {{"type", "integer"}, {"minimum", -2147483648LL}, {"maximum", 2147483647}};
        case MemberType::Answer:
            return {
                {"type", OrderedJson::array({"integer", "null"})}, {"minimum", -2147483648LL}, {"maximum", 2147483647}};
        case MemberType::Flag: return {{"type", "boolean"}};
        case MemberType::Truth: return {{"type", OrderedJson::array({"boolean", "null"})}};
        case MemberType::Choice: return {{"enum", member.choices}};
        case MemberType::Choices: return ListOf({{"enum", member.choices}});
        case MemberType::Codes:
            return ListOf({{"type", "integer"}, {"minimum", -2147483648LL}, {"maximum", 2147483647}});
        case MemberType::Properties:
            return {{"type", "object"},
                    {"additionalProperties", {{"type", "object"}, {"additionalProperties", PatternSchema()}}}};
        case MemberType::Policies:
        case MemberType::Tasks:
            return {{"anyOf", OrderedJson::array({OrderedJson{{"type", "string"}}, ListOf({{"type", "object"}})})}};
        case MemberType::Information: return {{"type", "object"}, {"additionalProperties", {{"type", "string"}}}};
        case MemberType::Steps: return ListOf({{"$ref", "#/definitions/step"}});
    }
    return {};
}

void AddMembers(const std::vector<Member>& members, OrderedJson& properties, OrderedJson& required) {
    for (const Member& member : members) {
        OrderedJson schema = TypeSchema(member);
        schema["description"] = member.meaning;
        properties[member.name] = std::move(schema);
        if (member.isRequired) {
            required.push_back(member.name);
        }
    }
}

OrderedJson ObjectSchema(OrderedJson properties, OrderedJson required) {
    return {{"type", "object"},
            {"properties", std::move(properties)},
            {"required", std::move(required)},
            {"additionalProperties", false}};
}

OrderedJson StepSchema(const Verb& verb) {
    OrderedJson properties = OrderedJson::object();
    OrderedJson required = OrderedJson::array();
    AddMembers(CommonMembers(), properties, required);
    properties["do"] = {{"const", verb.name}, {"description", verb.meaning}};
    AddMembers(verb.members, properties, required);
    return ObjectSchema(std::move(properties), std::move(required));
}

}  // namespace

OrderedJson MakeSchema() {
    OrderedJson properties = OrderedJson::object();
    OrderedJson required = OrderedJson::array();
    AddMembers(StoryMembers(), properties, required);
    OrderedJson names = OrderedJson::array();
    OrderedJson branches = OrderedJson::array();
    for (const Verb& verb : AllVerbs()) {
        names.push_back(verb.name);
        branches.push_back({{"if", {{"properties", {{"do", {{"const", verb.name}}}}}}}, {"then", StepSchema(verb)}});
    }
    OrderedJson schema = {{"$schema", "http://json-schema.org/draft-07/schema#"},
                          {"title", "A story that vsmsgbus plays with modules"}};
    schema.update(ObjectSchema(std::move(properties), std::move(required)));
    schema["definitions"]["step"] = {{"type", "object"},
                                     {"required", OrderedJson::array({"do"})},
                                     {"properties", {{"do", {{"enum", std::move(names)}}}}},
                                     {"allOf", std::move(branches)}};
    return schema;
}

}  // namespace tool::play
