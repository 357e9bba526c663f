// Modules' calls for crypto and information, and the agent's requests for properties and its log lines.
#include <vector>

#include "VsMsgbus/CollectProperties.h"
#include "VsMsgbus/Crypto.h"
#include "VsMsgbus/Information.h"
#include "fuzz/FuzzedSession.h"
#include "msgbus/lpc_buffer.h"

using VsKitMsgbus::lpc_buffer;

namespace {

constexpr unsigned mostRounds = 12;
constexpr size_t roomForResult = 4096;  // of the fuzzed agent

class FuzzedCollector final : public VsKitMsgbus::INYCollectProperties {
public:
    explicit FuzzedCollector(FuzzInput& fuzzInput) : input(fuzzInput) {}

    void CollectProperties(bool /*full*/, ISet* set) override {
        for (unsigned rounds = input.Below(4); rounds != 0; --rounds) {
            const ExactText<wchar_t> path(input, input.WideText());
            const ExactText<wchar_t> name(input, input.WideText());
            const ExactText<wchar_t> value(input, input.WideText());
            set->SetProperty(path.Get(), name.Get(), value.Get());
        }
        if (input.Byte() == 0xFF) {
            throw 1;
        }
    }
    int32_t GetLogLevel() override { return static_cast<int32_t>(input.Below(8)); }

private:
    FuzzInput& input;
};

// Exactly one more than the agent makes of anything is there.
void UseCrypto(FuzzInput& input) {
    using CryptoFunction = decltype(VsKitMsgbusEncryptData);
    CryptoFunction* const functions[] = {&VsKitMsgbusEncryptData, &VsKitMsgbusDecryptData, &VsKitMsgbusHashBuffer};
    const std::string text = input.Text();
    std::vector<unsigned char> data(text.begin(), text.end());
    std::vector<unsigned char> out(roomForResult + 1);
    unsigned int size = 0;
    CryptoFunction* const function = functions[input.Below(3)];
    const int32_t result =
        function(input.Rarely() ? nullptr : data.data(), static_cast<unsigned int>(data.size()),
                 input.Rarely() ? nullptr : out.data(), input.Rarely() ? nullptr : &size, input.Number(1));
    // A size is written also when the agent fails after that.
    if (result != 0 && result != -1) {
        Found("a crypto function's answer that there is not");
    }
}

void UseInformation(FuzzInput& input) {
    lpc_buffer out;
    unsigned int mode = 0;
    switch (input.Below(3)) {
        case 0: VsKitMsgbusGetInformation(input.Below(13), input.Rarely() ? nullptr : &out); break;
        case 1: {
            const ExactText<char> key(input, input.Text());
            VsKitMsgbusGetInfoByKeyName(key.Get(), &out);
            break;
        }
        default:
            VsKitMsgbusManagedMode(&mode);
            if (mode > 2) {
                Found("a mode that there is not");
            }
    }
    if (out.data != nullptr) {
        Touch(out.data, (out.length + 1) * (out.kind == lpc_buffer::WideText ? sizeof(wchar_t) : 1));
    }
    out.Release();
}

void RequestProperties(FuzzedSession& session) {
    const auto found = session.agent.Client()->properties.find(fuzzedProduct);
    if (found == session.agent.Client()->properties.end()) {
        return;
    }
    const auto [callback, userData] = found->second;
    ny_property_bag* const bag =
        session.input.Rarely() ? nullptr : session.agent.handles.Lend(std::make_unique<ny_property_bag>());
    const ExactText<char> product(session.input, session.input.Often() ? session.input.Text() : fuzzedProduct);
    callback(session.agent.Client(), product.Get(), bag, userData);
    session.agent.handles.EndLoan(bag);
}

void WriteLogLine(FuzzedSession& session) {
    const auto [callback, userData] = session.agent.Client()->log;
    if (callback != nullptr) {
        const ExactText<char> module(session.input, session.input.Text());
        const ExactText<char> message(session.input, session.input.Text());
        callback(session.input.Below(4), module.Get(), message.Get(), userData);
    }
}

void Run(FuzzedSession& session) {
    FuzzedCollector collector(session.input);
    VsKitMsgbusSetCollectProperties(fuzzedProductWide, &collector, &session.sink);
    for (unsigned round = 0; round < mostRounds && (round == 0 || !session.input.IsOver()); ++round) {
        const unsigned what = session.input.Below(4);
        if (what == 0) {
            UseCrypto(session.input);
        } else if (what == 1) {
            UseInformation(session.input);
        } else if (session.agent.Client() != nullptr) {
            what == 2 ? RequestProperties(session) : WriteLogLine(session);
        }
    }
    VsKitMsgbusRemoveCollectProperties(fuzzedProductWide);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    RunSession(data, size, Run);
    return 0;
}
