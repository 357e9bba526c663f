#include "SampleServices.h"

#include <fmt/format.h>

#include <string>
#include <vector>

#include "Text.h"
#include "VsMsgbus.h"

namespace {

using Bytes = std::vector<unsigned char>;
using CryptoFunction = decltype(VsKitMsgbusEncryptData);

// Our agent adds at most two blocks; the bridge does not ask how much room there is.
constexpr size_t roomToGrow = 64;
constexpr uint64_t type = 1;

// Empty when the agent failed.
Bytes Run(CryptoFunction* function, const Bytes& data) {
    Bytes result(data.size() + roomToGrow);
    unsigned int size = 0;
    if (function(data.data(), static_cast<unsigned int>(data.size()), result.data(), &size, type) != 0) {
        return {};
    }
    result.resize(size);
    return result;
}

bool SayInformation(const Speaker& speaker) {
    unsigned int mode = 0;
    VsKitMsgbus::lpc_buffer version{};
    VsKitMsgbus::lpc_buffer server{};
    const bool isKnown = VsKitMsgbusManagedMode(&mode) == 1 &&
                         VsKitMsgbusGetInformation(VsMsgbusInformationVersion, &version) == 1 &&
                         VsKitMsgbusGetInfoByKeyName("RdxServerLastUsed", &server) == 0;
    if (isKnown) {
        speaker.Say("module", fmt::format("asks the agent about itself: version {}, mode {}, last server {}",
                                          Utf8FromWide(static_cast<const wchar_t*>(version.data)), mode,
                                          static_cast<const char*>(server.data)));
    }
    version.Release();
    server.Release();
    return isKnown;
}

bool KeepSecret(const Speaker& speaker) {
    const std::string secret = "the module's secret";
    const Bytes plain(secret.begin(), secret.end());
    const Bytes encrypted = Run(VsKitMsgbusEncryptData, plain);
    const Bytes decrypted = Run(VsKitMsgbusDecryptData, encrypted);
    std::string beginning;
    for (size_t i = 0; i < encrypted.size() && i < 8; ++i) {
        beginning += fmt::format("{:02x}", encrypted[i]);
    }
    speaker.Say("module",
                fmt::format("has the agent encrypt {} bytes into {} ({}...) and decrypt them: {}", plain.size(),
                            encrypted.size(), beginning, decrypted == plain ? "the same again" : "something else"));
    return !encrypted.empty() && encrypted != plain && decrypted == plain;
}

}  // namespace

bool UseAgentServices(const Speaker& speaker) {
    const bool isInformed = SayInformation(speaker);
    return KeepSecret(speaker) && isInformed;
}
