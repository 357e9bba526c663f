#include <algorithm>
#include <array>
#include <string>

#include "VsMsgbus.h"
#include "abi/module/Module.h"
#include "abi/module/Told.h"

void ModuleUseCrypto() {
    const std::string plain = "a secret";
    std::array<unsigned char, 256> bytes{};
    unsigned int size = 0;
    std::copy(plain.begin(), plain.end(), bytes.begin());
    const auto length = static_cast<unsigned int>(plain.size());

    std::array<unsigned char, 256> encrypted{};
    Told() << L"Encrypting answers " << VsKitMsgbusEncryptData(bytes.data(), length, encrypted.data(), &size, 0);
    const bool isHidden = !std::equal(plain.begin(), plain.end(), encrypted.begin());
    Told() << L"it is " << (isHidden ? L"hidden" : L"plain");

    std::array<unsigned char, 256> decrypted{};
    Told() << L"Decrypting answers " << VsKitMsgbusDecryptData(encrypted.data(), size, decrypted.data(), &size, 0);
    Told() << L"it is " << std::wstring(decrypted.begin(), decrypted.begin() + size).c_str();

    Told() << L"Hashing answers " << VsKitMsgbusHashBuffer(bytes.data(), length, nullptr, &size, 0);
    Told() << L"the hash has " << static_cast<int32_t>(size) << L" bytes";
    Told() << L"FIPS mode answers " << VsKitMsgbusIsRunningInFIPSMode(bytes.data(), length);
}
