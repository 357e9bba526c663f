#include "updater/VsMsgbusUpdateInfoProvider.h"

#include "dispatcher/groups/UpdaterGroup.h"
#include "dispatcher/groups/VariantGroup.h"
#include "updater/CTheUpdateNotify.h"
#include "values/AgentException.h"
#include "values/AgentTexts.h"
#include "values/UnloggedText.h"
#include "values/WideText.h"

namespace bridge {

using corvane::ny::updater::updater_handler;
using VsKit::CUniStream;
using VsKitMsgbus::INYUpdateNotifyCallback;

namespace {

// The results that the agent reads when no module answered.
constexpr int32_t notNotified = 2;
constexpr int32_t notAvailable = VsKitMsgbus::ProductReturnNotAvailable;

// A text that the agent lacks is an empty one.
std::string TextOf(const char* text) {
    return text != nullptr ? text : "";
}

// The body of the functions with a result: `result` is written also when the call fails, unless it is null.
template <class Call>
int32_t CallForResult(const char* productId, void* userData, int32_t* result, int32_t atFirst, Call&& call) noexcept {
    int32_t unread = 0;
    int32_t* const written = result != nullptr ? result : &unread;
    *written = atFirst;
    return CallHandler<updater_handler>(productId, userData, [&](auto& service) { return call(service, *written); });
}

int32_t NotifyUpdate(ny_client_t* /*client*/, const char* productId, const char* second, const char* third,
                     uint32_t number, const char* fourth, int32_t* result, void* userData) {
    return CallForResult(productId, userData, result, notNotified, [&](auto& service, int32_t& written) {
        return service.update_notify(service.Client(), productId, TextOf(second), TextOf(third), number, TextOf(fourth),
                                     written);
    });
}

int32_t SetProductInfo(ny_client_t* /*client*/, const char* productId, const char* second, const char* key,
                       ny_variant_t* value, int32_t* result, void* userData) {
    return CallForResult(productId, userData, result, notAvailable, [&](auto& service, int32_t& written) {
        return service.set_product_info(service.Client(), productId, TextOf(second), TextOf(key), value, written);
    });
}

int32_t GetProductInfo(ny_client_t* /*client*/, const char* productId, const char* second, const char* key,
                       ny_variant_t** out, int32_t* result, void* userData) {
    return CallForResult(productId, userData, result, notAvailable, [&](auto& service, int32_t& written) {
        return service.get_product_info(service.Client(), productId, TextOf(second), TextOf(key), out, written);
    });
}

int32_t TakeEvent(ny_client_t* /*client*/, const char* productId, const ny_updater_event_t* event, void* userData) {
    return CallHandler<updater_handler>(
        productId, userData, [&](auto& service) { return service.event(service.Client(), productId, event); });
}

constexpr ny_updater_callbacks_t updaterCallbacks = {NotifyUpdate, SetProductInfo, GetProductInfo, TakeEvent};

// Runs `use(record)` with the product's callback, if it has one. A failure's text goes to no log. It names
// NY_UNEXPECTED for a failure that has no code of its own.
template <class Use>
int32_t CallProduct(const wchar_t* operation, const std::string& productId, const LibrariesInUse* libraries,
                    Use&& use) noexcept {
    const auto compose = [&](int32_t code) {
        ComposeUnlogged([&](CUniStream& text) {
            text << L"Failed to execute " << operation << L" for productId " << productId << L", exception " << code;
        });
    };
    try {
        UpdateNotifyTable().With(WideText(productId, libraries).View(),
                                 [&](const CTheUpdateNotify& record, auto&& /*wasRemoved*/) { use(record); });
    } catch (const AgentException& failure) {
        compose(failure.Code());
    } catch (...) {
        compose(NY_UNEXPECTED);
    }
    return NY_OK;
}

}  // namespace

VsMsgbusUpdateInfoProvider::~VsMsgbusUpdateInfoProvider() = default;

int32_t VsMsgbusUpdateInfoProvider::RegisterWithAgent(const std::string& productId) {
    return agent::ny_updater_register_callbacks.In(Libraries())(Client(), productId.c_str(), &updaterCallbacks,
                                                                CallbackArgument());
}

int32_t VsMsgbusUpdateInfoProvider::UnregisterFromAgent(const std::string& productId) {
    return agent::ny_updater_unregister_callbacks.In(Libraries())(Client(), productId.c_str());
}

int32_t VsMsgbusUpdateInfoProvider::update_notify(ny_client_t* /*agentClient*/, const std::string& productId,
                                                  const std::string& second, const std::string& third, uint32_t number,
                                                  const std::string& fourth, int32_t& result) {
    return CallProduct(L"update notify", productId, Libraries(), [&](const CTheUpdateNotify& record) {
        const WideText wideSecond(second, Libraries());
        const WideText wideFourth(fourth, Libraries());
        const WideText wideThird(third, Libraries());
        result = record.callback.Call(&INYUpdateNotifyCallback::UpdateNotify, wideSecond.Get(), wideFourth.Get(),
                                      wideThird.Get(), &number);
    });
}

int32_t VsMsgbusUpdateInfoProvider::set_product_info(ny_client_t* /*agentClient*/, const std::string& productId,
                                                     const std::string& second, const std::string& key,
                                                     ny_variant_t* value, int32_t& result) {
    return CallProduct(L"set product info", productId, Libraries(), [&](const CTheUpdateNotify& record) {
        const WideText wideSecond(second, Libraries());
        const WideText wideKey(key, Libraries());
        const std::wstring wideValue = WideFromVariant(value, Libraries());
        result = record.callback.Call(&INYUpdateNotifyCallback::SetProductInfo, wideSecond.Get(), wideKey.Get(),
                                      wideValue.c_str());
    });
}

int32_t VsMsgbusUpdateInfoProvider::get_product_info(ny_client_t* /*agentClient*/, const std::string& productId,
                                                     const std::string& second, const std::string& key,
                                                     ny_variant_t** out, int32_t& result) {
    return CallProduct(L"get product info", productId, Libraries(), [&](const CTheUpdateNotify& record) {
        const WideText wideSecond(second, Libraries());
        const WideText wideKey(key, Libraries());
        std::wstring value;
        const int32_t answer = record.RunGetProductInfo(wideSecond.Get(), wideKey.Get(), value);
        if (out != nullptr) {
            const std::string narrow = NarrowFromWide(value, Libraries());
            ny_variant_t* created = nullptr;
            Check(agent::ny_variant_create_from_string.In(Libraries())(narrow.data(), narrow.size(), &created));
            *out = created;
        }
        // Last: when the value could not be handed over, the result must stay as it was.
        result = answer;
    });
}

int32_t VsMsgbusUpdateInfoProvider::event(ny_client_t* /*agentClient*/, const std::string& /*productId*/,
                                          const ny_updater_event_t* /*event*/) {
    return NY_OK;
}

}  // namespace bridge
