#include "SampleServices.h"

#include <string_view>

#include "vsmsgbus.hpp"

namespace {

bool SayInformation(const Speaker& speaker) {
    const auto version = vsmsgbus::Information::Version();
    const auto mode = vsmsgbus::Information::ManagedMode();
    const auto server = vsmsgbus::Information::ByKey("RdxServerLastUsed");
    if (!version || !mode || !server) {
        return false;
    }
    speaker.Say("asks the agent about itself: version {}, mode {}, last server {}", vsmsgbus::Utf8(*version), *mode,
                *server);
    return true;
}

bool KeepSecret(const Speaker& speaker) {
    constexpr std::string_view secret = "the module's secret";
    constexpr uint64_t type = 1;  // the agent defines what it means
    const vsmsgbus::Bytes plain(secret.begin(), secret.end());
    const vsmsgbus::Bytes encrypted = vsmsgbus::Encrypt(plain, type);
    const vsmsgbus::Bytes decrypted = vsmsgbus::Decrypt(encrypted, type);
    std::string beginning;
    for (size_t i = 0; i < encrypted.size() && i < 8; ++i) {
        beginning += fmt::format("{:02x}", encrypted[i]);
    }
    speaker.Say("has the agent encrypt {} bytes into {} ({}...) and decrypt them: {}", plain.size(), encrypted.size(),
                beginning, decrypted == plain ? "the same again" : "something else");
    return encrypted != plain && decrypted == plain;
}

}  // namespace

bool UseAgentServices(const Speaker& speaker) {
    const bool isInformed = SayInformation(speaker);
    return KeepSecret(speaker) && isInformed;
}
