// The operating system's cryptography.
#pragma once

#include <string>
#include <string_view>

namespace simulator {

// AES-256 in CBC mode with a key of the object's own, and SHA-256. From any thread. All throw Failure: NY_UNEXPECTED
// when the system fails, NY_SIM_NOT_ENCRYPTED for data that cannot be decrypted.
class SystemCrypto {
public:
    static constexpr unsigned blockSize = 16;
    static constexpr unsigned keySize = 32;
    static constexpr unsigned hashSize = 32;

    // Makes the key.
    SystemCrypto();

    // A random initialisation vector and the padded data behind it.
    std::string Encrypt(std::string_view data) const;
    std::string Decrypt(std::string_view encrypted) const;
    static std::string Hash(std::string_view data);

private:
    std::string key;
};

}  // namespace simulator
