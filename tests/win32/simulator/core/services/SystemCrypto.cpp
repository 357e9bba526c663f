// The simulated agent's cryptography in the native builds, which have no Windows to ask for it.
#include "simulator/core/services/SystemCrypto.h"

#include <openssl/evp.h>
#include <openssl/rand.h>

#include <limits>
#include <memory>

#include "ny_simulator.h"
#include "simulator/core/frame/Failure.h"

namespace simulator {

namespace {

struct FreeCipher {
    void operator()(EVP_CIPHER_CTX* cipher) const noexcept { EVP_CIPHER_CTX_free(cipher); }
};
using Cipher = std::unique_ptr<EVP_CIPHER_CTX, FreeCipher>;

void CheckSystem(int result) {
    if (result != 1) {
        throw Failure{NY_UNEXPECTED};
    }
}

unsigned char* Bytes(std::string& text) {
    return reinterpret_cast<unsigned char*>(text.data());
}

const unsigned char* Bytes(std::string_view text) {
    return reinterpret_cast<const unsigned char*>(text.data());
}

int SizeOf(std::string_view text) {
    if (text.size() > std::numeric_limits<int>::max() - 2 * SystemCrypto::blockSize) {
        throw Failure{NY_OUT_OF_MEMORY};
    }
    return static_cast<int>(text.size());
}

std::string RandomBytes(size_t size) {
    std::string bytes(size, '\0');
    CheckSystem(RAND_bytes(Bytes(bytes), static_cast<int>(size)));
    return bytes;
}

Cipher MakeCipher() {
    Cipher cipher(EVP_CIPHER_CTX_new());
    if (cipher == nullptr) {
        throw Failure{NY_OUT_OF_MEMORY};
    }
    return cipher;
}

}  // namespace

SystemCrypto::SystemCrypto() : key(RandomBytes(keySize)) {}

std::string SystemCrypto::Encrypt(std::string_view data) const {
    const Cipher cipher = MakeCipher();
    std::string encrypted = RandomBytes(blockSize);
    CheckSystem(EVP_EncryptInit_ex(cipher.get(), EVP_aes_256_cbc(), nullptr, Bytes(std::string_view(key)),
                                   Bytes(std::string_view(encrypted))));
    encrypted.resize(blockSize + data.size() + blockSize);
    int written = 0;
    int last = 0;
    CheckSystem(EVP_EncryptUpdate(cipher.get(), Bytes(encrypted) + blockSize, &written, Bytes(data), SizeOf(data)));
    CheckSystem(EVP_EncryptFinal_ex(cipher.get(), Bytes(encrypted) + blockSize + written, &last));
    encrypted.resize(blockSize + static_cast<size_t>(written + last));
    return encrypted;
}

std::string SystemCrypto::Decrypt(std::string_view encrypted) const {
    if (encrypted.size() < 2 * blockSize || encrypted.size() % blockSize != 0) {
        throw Failure{NY_SIM_NOT_ENCRYPTED};
    }
    const Cipher cipher = MakeCipher();
    CheckSystem(
        EVP_DecryptInit_ex(cipher.get(), EVP_aes_256_cbc(), nullptr, Bytes(std::string_view(key)), Bytes(encrypted)));
    const std::string_view body = encrypted.substr(blockSize);
    std::string data(body.size() + blockSize, '\0');
    int written = 0;
    int last = 0;
    CheckSystem(EVP_DecryptUpdate(cipher.get(), Bytes(data), &written, Bytes(body), SizeOf(body)));
    if (EVP_DecryptFinal_ex(cipher.get(), Bytes(data) + written, &last) != 1) {
        throw Failure{NY_SIM_NOT_ENCRYPTED};
    }
    data.resize(static_cast<size_t>(written + last));
    return data;
}

std::string SystemCrypto::Hash(std::string_view data) {
    std::string result(hashSize, '\0');
    unsigned int written = 0;
    CheckSystem(EVP_Digest(data.data(), data.size(), Bytes(result), &written, EVP_sha256(), nullptr));
    return result;
}

}  // namespace simulator
