#include "simulator/core/services/SystemCrypto.h"

#include <windows.h>

#include <bcrypt.h>

#include <limits>
#include <memory>

#include "ny_simulator.h"
#include "simulator/core/frame/Failure.h"

namespace simulator {

namespace {

void CheckSystem(NTSTATUS status) {
    if (status < 0) {
        throw Failure{NY_UNEXPECTED};
    }
}

struct CloseAlgorithm {
    void operator()(void* algorithm) const noexcept { BCryptCloseAlgorithmProvider(algorithm, 0); }
};
struct DestroyKey {
    void operator()(void* key) const noexcept { BCryptDestroyKey(key); }
};
struct DestroyHash {
    void operator()(void* hash) const noexcept { BCryptDestroyHash(hash); }
};
using Algorithm = std::unique_ptr<void, CloseAlgorithm>;
using Key = std::unique_ptr<void, DestroyKey>;
using RunningHash = std::unique_ptr<void, DestroyHash>;

// Windows takes a pointer to non-const, also to what it only reads.
UCHAR* Bytes(std::string_view text) {
    return reinterpret_cast<UCHAR*>(const_cast<char*>(text.data()));
}

ULONG SizeOf(std::string_view text) {
    if (text.size() > std::numeric_limits<ULONG>::max() - 2 * SystemCrypto::blockSize) {
        throw Failure{NY_OUT_OF_MEMORY};
    }
    return static_cast<ULONG>(text.size());
}

Algorithm Open(const wchar_t* name) {
    BCRYPT_ALG_HANDLE algorithm = nullptr;
    CheckSystem(BCryptOpenAlgorithmProvider(&algorithm, name, nullptr, 0));
    return Algorithm(algorithm);
}

// A cipher with its key, for one use.
class Cipher {
public:
    explicit Cipher(std::string_view secret) : algorithm(Open(BCRYPT_AES_ALGORITHM)) {
        wchar_t mode[] = BCRYPT_CHAIN_MODE_CBC;
        CheckSystem(
            BCryptSetProperty(algorithm.get(), BCRYPT_CHAINING_MODE, reinterpret_cast<UCHAR*>(mode), sizeof mode, 0));
        BCRYPT_KEY_HANDLE handle = nullptr;
        CheckSystem(BCryptGenerateSymmetricKey(algorithm.get(), &handle, nullptr, 0, Bytes(secret), SizeOf(secret), 0));
        key.reset(handle);
    }

    void* Handle() const { return key.get(); }

private:
    const Algorithm algorithm;
    Key key;
};

std::string RandomBytes(size_t size) {
    std::string bytes(size, '\0');
    CheckSystem(BCryptGenRandom(nullptr, Bytes(bytes), static_cast<ULONG>(size), BCRYPT_USE_SYSTEM_PREFERRED_RNG));
    return bytes;
}

}  // namespace

SystemCrypto::SystemCrypto() : key(RandomBytes(keySize)) {}

std::string SystemCrypto::Encrypt(std::string_view data) const {
    const Cipher cipher(key);
    std::string encrypted = RandomBytes(blockSize);
    // A copy: the system changes the vector that it is given.
    std::string vector = encrypted;
    const ULONG room = SizeOf(data) + blockSize;
    encrypted.resize(blockSize + room);
    ULONG written = 0;
    CheckSystem(BCryptEncrypt(cipher.Handle(), Bytes(data), SizeOf(data), nullptr, Bytes(vector), blockSize,
                              Bytes(encrypted) + blockSize, room, &written, BCRYPT_BLOCK_PADDING));
    encrypted.resize(blockSize + written);
    return encrypted;
}

std::string SystemCrypto::Decrypt(std::string_view encrypted) const {
    if (encrypted.size() < size_t{2} * blockSize || encrypted.size() % blockSize != 0) {
        throw Failure{NY_SIM_NOT_ENCRYPTED};
    }
    const Cipher cipher(key);
    std::string vector(encrypted.substr(0, blockSize));
    const std::string_view body = encrypted.substr(blockSize);
    std::string data(body.size(), '\0');
    ULONG written = 0;
    if (BCryptDecrypt(cipher.Handle(), Bytes(body), SizeOf(body), nullptr, Bytes(vector), blockSize, Bytes(data),
                      SizeOf(data), &written, BCRYPT_BLOCK_PADDING) < 0) {
        throw Failure{NY_SIM_NOT_ENCRYPTED};
    }
    data.resize(written);
    return data;
}

std::string SystemCrypto::Hash(std::string_view data) {
    const Algorithm algorithm = Open(BCRYPT_SHA256_ALGORITHM);
    BCRYPT_HASH_HANDLE handle = nullptr;
    CheckSystem(BCryptCreateHash(algorithm.get(), &handle, nullptr, 0, nullptr, 0, 0));
    const RunningHash hash(handle);
    CheckSystem(BCryptHashData(hash.get(), Bytes(data), SizeOf(data), 0));
    std::string result(hashSize, '\0');
    CheckSystem(BCryptFinishHash(hash.get(), Bytes(result), hashSize, 0));
    return result;
}

}  // namespace simulator
