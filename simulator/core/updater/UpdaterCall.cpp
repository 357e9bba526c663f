#include "simulator/core/updater/UpdaterCall.h"

#include "simulator/core/frame/Failure.h"
#include "simulator/core/values/JsonConversion.h"
#include "simulator/core/values/JsonValues.h"

namespace simulator {

namespace {

UpdaterCall::Kind KindFrom(const Json& json) {
    const std::string name = TextFrom(json);
    if (name == "update notify") {
        return UpdaterCall::Kind::UpdateNotify;
    }
    if (name == "set product info") {
        return UpdaterCall::Kind::SetProductInfo;
    }
    if (name == "get product info") {
        return UpdaterCall::Kind::GetProductInfo;
    }
    Require(name == "event");
    return UpdaterCall::Kind::Event;
}

uint32_t NumberFrom(const Json& json) {
    Require(json.is_number_unsigned() && json.get<uint64_t>() <= UINT32_MAX);
    return json.get<uint32_t>();
}

void LeaveOut(UpdaterCall& call, const Json& json) {
    Require(json.is_array());
    for (const Json& element : json) {
        const std::string name = TextFrom(element);
        Require(name == "product" || name == "result" || name == "out");
        (name == "product" ? call.withoutProduct : name == "result" ? call.withoutResult : call.withoutOut) = true;
    }
}

void Take(UpdaterCall& call, const std::string& member, const Json& json) {
    if (member == "call") {
        call.kind = KindFrom(json);
    } else if (member == "product") {
        call.product = TextFrom(json);
    } else if (member == "second") {
        call.second = TextFrom(json);
    } else if (member == "third") {
        call.third = TextFrom(json);
    } else if (member == "fourth") {
        call.fourth = TextFrom(json);
    } else if (member == "key") {
        call.key = TextFrom(json);
    } else if (member == "number") {
        call.number = NumberFrom(json);
    } else if (member == "value") {
        call.value = ValueFromJson(json.dump().c_str());
    } else {
        Require(member == "without");
        LeaveOut(call, json);
    }
}

}  // namespace

UpdaterCall UpdaterCallFromJson(const char* json) {
    const Json parsed = Json::parse(json, nullptr, false);
    Require(parsed.is_object() && parsed.contains("call") && parsed.contains("product"));
    UpdaterCall call;
    for (const auto& [member, value] : parsed.items()) {
        Take(call, member, value);
    }
    return call;
}

}  // namespace simulator
