// Updates: the four callbacks.
#include <new>

#include "VsMsgbus/UpdateNotify.h"
#include "fuzz/FuzzedSession.h"

using VsKitMsgbus::etag_PRODUCT_RETURN_VALUE;

namespace {

constexpr unsigned mostRounds = 8;
constexpr int32_t untouched = 4711;

class FuzzedUpdateCallback final : public VsKitMsgbus::INYUpdateNotifyCallback {
public:
    explicit FuzzedUpdateCallback(FuzzInput& fuzzInput) : input(fuzzInput) {}

    int32_t UpdateNotify(const wchar_t* second, const wchar_t* fourth, const wchar_t* third,
                         uint32_t* number) override {
        Touch(number, sizeof *number);
        return Read(second, fourth, third);
    }
    etag_PRODUCT_RETURN_VALUE GetProductInfo(VsKit::cp_wchar second, VsKit::cp_wchar key, ISet* set) override {
        for (unsigned rounds = input.Below(3); rounds != 0; --rounds) {
            const ExactText<wchar_t> value(input, input.WideText());
            set->Set(value.Get());
        }
        return static_cast<etag_PRODUCT_RETURN_VALUE>(Read(second, key, nullptr));
    }
    int32_t SetProductInfo(const wchar_t* second, const wchar_t* key, const wchar_t* value) override {
        return Read(second, key, value);
    }

private:
    int32_t Read(const wchar_t* first, const wchar_t* second, const wchar_t* third) {
        Touch(first);
        Touch(second);
        Touch(third);
        const uint8_t answer = input.Byte();
        if (answer == 0xFF) {
            throw std::bad_alloc();
        }
        return answer;
    }

    FuzzInput& input;
};

// The result is written whatever becomes of the call.
void ExpectWritten(const int32_t* result) {
    if (result != nullptr && *result == untouched) {
        Found("an update whose result was not written");
    }
}

void GetProductInfo(FuzzedSession& session, const ny_updater_callbacks_t& callbacks, void* userData,
                    const char* product, const char* second, const char* key, int32_t* result) {
    ny_variant_t* value = nullptr;
    callbacks.get_product_info(session.agent.Client(), product, second, key, session.input.Rarely() ? nullptr : &value,
                               result, userData);
    if (value != nullptr) {
        session.agent.handles.Release(value);
    }
}

void SetProductInfo(FuzzedSession& session, const ny_updater_callbacks_t& callbacks, void* userData,
                    const char* product, const char* second, const char* key, int32_t* result) {
    ny_variant* const value =
        session.input.Rarely() ? nullptr : session.agent.handles.Lend(session.agent.MakeVariant());
    callbacks.set_product_info(session.agent.Client(), product, second, key, value, result, userData);
    session.agent.handles.EndLoan(value);
}

void CallBack(FuzzedSession& session) {
    const auto found = session.agent.Client()->updates.find(fuzzedProduct);
    if (found == session.agent.Client()->updates.end()) {
        return;
    }
    FuzzInput& input = session.input;
    const auto [callbacks, userData] = found->second;
    const ExactText<char> product(input, input.Often() ? input.Text() : fuzzedProduct);
    const ExactText<char> second(input, input.Text());
    const ExactText<char> third(input, input.Text());
    int32_t place = untouched;
    int32_t* const result = input.Rarely() ? nullptr : &place;
    switch (input.Below(4)) {
        case 0: {
            const ExactText<char> fourth(input, input.Text());
            callbacks.update_notify(session.agent.Client(), product.Get(), second.Get(), third.Get(),
                                    static_cast<uint32_t>(input.Number()), fourth.Get(), result, userData);
            break;
        }
        case 1: SetProductInfo(session, callbacks, userData, product.Get(), second.Get(), third.Get(), result); break;
        case 2: GetProductInfo(session, callbacks, userData, product.Get(), second.Get(), third.Get(), result); break;
        default: callbacks.event(session.agent.Client(), product.Get(), nullptr, userData); return;
    }
    ExpectWritten(result);
}

void Run(FuzzedSession& session) {
    FuzzedUpdateCallback callback(session.input);
    VsKitMsgbusSetUpdateNotify(fuzzedProductWide, &callback, nullptr);
    for (unsigned round = 0; round < mostRounds && (round == 0 || !session.input.IsOver()); ++round) {
        if (session.agent.Client() != nullptr) {
            CallBack(session);
        }
    }
    VsKitMsgbusRemoveUpdateNotify(fuzzedProductWide);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    RunSession(data, size, Run);
    return 0;
}
