// Flows in which modules ask the agent for crypto and information.
#include <array>

#include "flows/EnteredFlow.h"
#include "flows/FlowList.h"
#include "ny_simulator.h"

namespace {

class CryptoFlow final : public EnteredFlow<0> {
public:
    using EnteredFlow::EnteredFlow;
    void Run() override {
        constexpr std::array<unsigned char, 5> data = {'d', 'a', 't', 'a', '!'};
        const unsigned int encrypted = Note(VsKitMsgbusEncryptData, "Encrypt", data.data(), data.size());
        const std::array<unsigned char, 64> secret = output;
        // Data that could not be encrypted cannot be decrypted either: the agent refuses it.
        Note(VsKitMsgbusDecryptData, "Decrypt", secret.data(), encrypted);
        world.Note("decrypted: <" + std::string(output.begin(), output.begin() + 5) + ">");
        Note(VsKitMsgbusHashBuffer, "Hash", data.data(), data.size());
    }

private:
    // Runs one of the exports and gives the size of its result.
    unsigned int Note(decltype(VsKitMsgbusEncryptData)* run, const char* name, const unsigned char* data, size_t size) {
        output.fill('.');
        unsigned int written = 0;
        const int32_t answer = run(data, static_cast<unsigned int>(size), output.data(), &written, 1);
        world.Note(std::string(name) + ": " + std::to_string(answer) + ", size " + std::to_string(written));
        return written;
    }

    std::array<unsigned char, 64> output{};
};

class InformationFlow final : public EnteredFlow<0> {
public:
    using EnteredFlow::EnteredFlow;
    void Prepare() override {
        ny_sim_set_all_information(R"({"AgentMode": "1", "GUID": "{1-2}", "Version": "5.7.0"})");
        EnteredFlow::Prepare();
    }
    void Run() override {
        VsKitMsgbus::lpc_buffer buffer{};
        int32_t answer = VsKitMsgbusGetInformation(VsMsgbusInformationVersion, &buffer);
        world.Note("GetInformation: " + std::to_string(answer) + " " + TakeBuffer(buffer));
        answer = VsKitMsgbusGetInfoByKeyName("GUID", &buffer);
        world.Note("GetInfoByKeyName: " + std::to_string(answer) + " " + TakeBuffer(buffer));
        unsigned int mode = 77;
        answer = VsKitMsgbusManagedMode(&mode);
        world.Note("ManagedMode: " + std::to_string(answer) + " " + std::to_string(mode));
    }
};

}  // namespace

std::vector<FlowKind> ServiceFlows() {
    return {{"Crypto", MakeFlow<CryptoFlow>}, {"Information", MakeFlow<InformationFlow>}};
}
