// Encrypting, decrypting and hashing through the agent.
#include <algorithm>
#include <thread>

#include "services/ServicesTest.h"
#include "support/KeptHandles.h"
#include "support/OnPurpose.h"

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

using Bytes = std::vector<unsigned char>;
using CryptoFunction = decltype(&VsKitMsgbusEncryptData);

constexpr unsigned char untouched = 0xEE;
constexpr unsigned int untouchedSize = 0xEEEEEEEE;

// One call with a large enough buffer for its result.
struct CryptoCall {
    CryptoCall(CryptoFunction function, const Bytes& data, uint64_t type = 0)
        : out(data.size() + 100, untouched),
          answer(function(data.data(), static_cast<unsigned int>(data.size()), out.data(), &size, type)) {}

    Bytes Result() const { return {out.begin(), out.begin() + size}; }
    bool IsOutUntouched() const {
        return std::all_of(out.begin(), out.end(), [](unsigned char byte) { return byte == untouched; });
    }

    Bytes out;
    unsigned int size = untouchedSize;
    int32_t answer;
};

Bytes SomeBytes(size_t size) {
    Bytes bytes(size);
    for (size_t i = 0; i < size; ++i) {
        bytes[i] = static_cast<unsigned char>(i * 31 + i / 251);
    }
    return bytes;
}

constexpr CryptoFunction allFunctions[] = {&VsKitMsgbusEncryptData, &VsKitMsgbusDecryptData, &VsKitMsgbusHashBuffer};

void ExpectFailure(const CryptoCall& call) {
    EXPECT_EQ(call.answer, -1);
    EXPECT_EQ(call.size, untouchedSize);
    EXPECT_TRUE(call.IsOutUntouched());
}

class Crypto : public ServicesTest {};

TEST_F(Crypto, DecryptWhatTheyEncrypted) {
    constexpr size_t sizes[] = {1, 15, 16, 17, 4096};
    for (const size_t size : sizes) {
        const Bytes data = SomeBytes(size);
        const CryptoCall encrypted(VsKitMsgbusEncryptData, data);
        EXPECT_EQ(encrypted.answer, 0);
        EXPECT_GT(encrypted.size, size);
        EXPECT_NE(encrypted.Result(), data);
        const CryptoCall decrypted(VsKitMsgbusDecryptData, encrypted.Result());
        EXPECT_EQ(decrypted.answer, 0);
        EXPECT_EQ(decrypted.Result(), data);
    }
    EXPECT_THAT(sink.log.Lines(), IsEmpty());
}

TEST_F(Crypto, WriteNoByteBeyondTheResult) {
    const CryptoCall encrypted(VsKitMsgbusEncryptData, SomeBytes(40));
    ASSERT_LT(encrypted.size, encrypted.out.size());
    EXPECT_THAT(Bytes(encrypted.out.begin() + encrypted.size, encrypted.out.end()), Each(untouched));
}

TEST_F(Crypto, TakeNoDataAsTheyTakeSome) {
    unsigned char out[64] = {};
    unsigned int size = untouchedSize;
    ASSERT_EQ(VsKitMsgbusEncryptData(nullptr, 0, out, &size, 0), 0);
    EXPECT_EQ(size, 32U);
    const CryptoCall decrypted(VsKitMsgbusDecryptData, Bytes(out, out + size));
    EXPECT_EQ(decrypted.answer, 0);
    EXPECT_EQ(decrypted.size, 0U);
    EXPECT_TRUE(decrypted.IsOutUntouched());
}

TEST_F(Crypto, TakeSixteenMegabytes) {
    const Bytes data = SomeBytes(size_t{16} << 20);
    const CryptoCall encrypted(VsKitMsgbusEncryptData, data);
    ASSERT_EQ(encrypted.answer, 0);
    const CryptoCall decrypted(VsKitMsgbusDecryptData, encrypted.Result());
    ASSERT_EQ(decrypted.answer, 0);
    EXPECT_TRUE(decrypted.Result() == data);
    EXPECT_EQ(CryptoCall(VsKitMsgbusHashBuffer, data).size, 32U);
}

TEST_F(Crypto, MayWriteOverTheirData) {
    Bytes data = SomeBytes(16);
    data.resize(100);
    unsigned int size = 0;
    ASSERT_EQ(VsKitMsgbusEncryptData(data.data(), 16, data.data(), &size, 0), 0);
    ASSERT_EQ(VsKitMsgbusDecryptData(data.data(), size, data.data(), &size, 0), 0);
    data.resize(size);
    EXPECT_EQ(data, SomeBytes(16));
}

// The hash itself never leaves the bridge.
TEST_F(Crypto, GiveTheSizeOfAHashAndNotItsBytes) {
    const CryptoCall hash(VsKitMsgbusHashBuffer, SomeBytes(1000));
    EXPECT_EQ(hash.answer, 0);
    EXPECT_EQ(hash.size, 32U);
    EXPECT_TRUE(hash.IsOutUntouched());
    const unsigned char byte = 1;
    unsigned int size = 0;
    EXPECT_EQ(VsKitMsgbusHashBuffer(&byte, 1, nullptr, &size, 0), 0);
    EXPECT_EQ(size, 32U);
}

TEST_F(Crypto, PassTheTypeOnUnchanged) {
    for (const CryptoFunction function : {&VsKitMsgbusEncryptData, &VsKitMsgbusHashBuffer}) {
        for (const uint64_t type : {uint64_t{0}, uint64_t{1}, uint64_t{0x123456789ABCDEF0}, UINT64_MAX}) {
            EXPECT_EQ(CryptoCall(function, SomeBytes(3), type).answer, 0);
            EXPECT_EQ(ny_sim_last_crypto_type(), type);
        }
    }
    CryptoCall(VsKitMsgbusDecryptData, SomeBytes(3), 0x8000000000000001);
    EXPECT_EQ(ny_sim_last_crypto_type(), 0x8000000000000001);
}

TEST_F(Crypto, DecryptNothingThatTheAgentDidNotEncrypt) {
    ExpectFailure(CryptoCall(VsKitMsgbusDecryptData, SomeBytes(5)));
}

TEST_F(Crypto, RefuseNull) {
    const unsigned char byte = 1;
    unsigned char out[64] = {untouched};
    unsigned int size = untouchedSize;
    ny_sim_clear_calls();
    for (const CryptoFunction function : allFunctions) {
        EXPECT_EQ(function(nullptr, 1, out, &size, 0), -1);
        EXPECT_EQ(function(&byte, 1, out, nullptr, 0), -1);
    }
    EXPECT_EQ(size, untouchedSize);
    EXPECT_EQ(out[0], untouched);
    EXPECT_EQ(ny_sim_call_count(nullptr), 0U);
}

TEST_F(Crypto, NeedNoPlaceForAResultOfNoBytes) {
    const Bytes encryptedNothing = CryptoCall(VsKitMsgbusEncryptData, {}).Result();
    unsigned int size = untouchedSize;
    EXPECT_EQ(VsKitMsgbusDecryptData(encryptedNothing.data(), static_cast<unsigned int>(encryptedNothing.size()),
                                     nullptr, &size, 0),
              0);
    EXPECT_EQ(size, 0U);
}

TEST_F(Crypto, FailWithoutAPlaceForTheResult) {
    const Bytes encrypted = CryptoCall(VsKitMsgbusEncryptData, SomeBytes(20)).Result();
    unsigned int size = untouchedSize;
    EXPECT_EQ(VsKitMsgbusEncryptData(encrypted.data(), 20, nullptr, &size, 0), -1);
    EXPECT_EQ(VsKitMsgbusDecryptData(encrypted.data(), static_cast<unsigned int>(encrypted.size()), nullptr, &size, 0),
              -1);
    EXPECT_EQ(size, untouchedSize);
    EXPECT_EQ(ny_sim_live_handles(NY_SIM_BUFFER), 0U);
}

TEST_F(Crypto, CallTheAgentForNothingElse) {
    ny_sim_clear_calls();
    CryptoCall(VsKitMsgbusEncryptData, SomeBytes(3));
    EXPECT_THAT(AgentCalls(), ElementsAre("ny_buffer_create", "ny_crypto_encrypt_data_by_type", "ny_buffer_get_raw",
                                          "ny_buffer_release"));
    ny_sim_clear_calls();
    CryptoCall(VsKitMsgbusHashBuffer, SomeBytes(3));
    EXPECT_THAT(AgentCalls(), ElementsAre("ny_buffer_create", "ny_crypto_hash_data_by_type", "ny_buffer_get_raw",
                                          "ny_buffer_release"));
}

TEST_F(Crypto, FailWithMinusOneWhateverTheAgentsCodeIs) {
    const Bytes encrypted = CryptoCall(VsKitMsgbusEncryptData, SomeBytes(20)).Result();
    const std::pair<CryptoFunction, const char*> functions[] = {
        {&VsKitMsgbusEncryptData, "ny_crypto_encrypt_data_by_type"},
        {&VsKitMsgbusDecryptData, "ny_crypto_decrypt_data_by_type"},
        {&VsKitMsgbusHashBuffer, "ny_crypto_hash_data_by_type"}};
    for (const auto& [function, agentFunction] : functions) {
        for (const char* const failing : {"ny_buffer_create", agentFunction, "ny_buffer_get_raw"}) {
            for (const int32_t code : faultCodes) {
                ASSERT_EQ(ny_sim_fail_call(failing, 1, code, NY_SIM_ONCE), NY_OK);
                ExpectFailure(CryptoCall(function, encrypted));
            }
        }
        EXPECT_EQ(CryptoCall(function, encrypted).answer, 0);
    }
    EXPECT_EQ(ny_sim_live_handles(NY_SIM_BUFFER), 0U);
    EXPECT_THAT(sink.log.Lines(), IsEmpty());
}

// The result is there by then.
TEST_F(Crypto, FailWithTheResultWrittenWhenTheAgentKeepsTheBuffer) {
    const Bytes data = SomeBytes(20);
    const Bytes encrypted = CryptoCall(VsKitMsgbusEncryptData, data).Result();
    for (const int32_t code : faultCodes) {
        KeptHandles kept;
        ASSERT_EQ(ny_sim_fail_call("ny_buffer_release", 1, code, NY_SIM_FROM_THEN_ON), NY_OK);
        const CryptoCall again(VsKitMsgbusEncryptData, data);
        EXPECT_EQ(again.answer, -1);
        EXPECT_EQ(again.size, encrypted.size());
        EXPECT_FALSE(again.IsOutUntouched());
        const CryptoCall decrypted(VsKitMsgbusDecryptData, encrypted);
        EXPECT_EQ(decrypted.answer, -1);
        EXPECT_EQ(decrypted.Result(), data);
        const CryptoCall hash(VsKitMsgbusHashBuffer, data);
        EXPECT_EQ(hash.answer, -1);
        EXPECT_EQ(hash.size, 32U);
        EXPECT_EQ(kept.Release(), 3U);
    }
}

TEST_F(Crypto, FailWithoutAnAgent) {
    LoseAgent();
    ny_sim_clear_calls();
    for (const CryptoFunction function : allFunctions) {
        ExpectFailure(CryptoCall(function, SomeBytes(20)));
    }
    EXPECT_EQ(ny_sim_call_count(nullptr), 0U);
    EXPECT_THAT(sink.log.Lines(), IsEmpty());
}

// The watcher lets go of the agent while modules' threads are in it.
TEST_F(Crypto, OnManyThreadsSucceedOrFailWhileTheAgentIsUpgraded) {
    UpgradeDuring([] {
        const CryptoCall encrypted(VsKitMsgbusEncryptData, SomeBytes(100));
        if (encrypted.answer != 0) {
            ExpectFailure(encrypted);
            return false;
        }
        EXPECT_EQ(encrypted.size, 128U);
        return true;
    });
}

class CryptoOutsideOfTheBridge : public InstalledAgentTest {};

TEST_F(CryptoOutsideOfTheBridge, FailsBeforeEntryAndAfterTheLastExit) {
    for (const CryptoFunction function : allFunctions) {
        ExpectFailure(CryptoCall(function, SomeBytes(20)));
    }
    Product(std::string("PRODUCT1000"), nullptr, 0).Exit();
    ny_sim_clear_calls();
    for (const CryptoFunction function : allFunctions) {
        ExpectFailure(CryptoCall(function, SomeBytes(20)));
    }
    EXPECT_EQ(ny_sim_call_count(nullptr), 0U);
}

TEST_F(CryptoOutsideOfTheBridge, ReportsSuccessForWhatItDoesNotDo) {
    const OnPurpose mistakes{"NOTHING-DONE"};
    unsigned char data[] = {untouched};
    unsigned char out[] = {untouched};
    unsigned int size = untouchedSize;
    for (int round = 0; round < 2; ++round) {
        EXPECT_EQ(VsKitMsgbusIsRunningInFIPSMode(), 0);
        EXPECT_EQ(VsKitMsgbusIsRunningInFIPSMode(nullptr, 1, 2.0), 0);
        EXPECT_EQ(VsKitMsgbusDecodeData(data, 1, out, &size, uint64_t{1}), 0);
        EXPECT_EQ(VsKitMsgbusEncodeData(data, 1, out, &size, uint64_t{1}), 0);
        EXPECT_EQ(VsKitMsgbusDecodeAndDecryptData(data, 1, out, &size, uint64_t{1}), 0);
        EXPECT_EQ(VsKitMsgbusEncryptAndEncodeData(nullptr, -1, nullptr, nullptr, uint64_t{1}), 0);
        Product(std::string("PRODUCT1000"), nullptr, 0).Exit();
    }
    EXPECT_EQ(data[0], untouched);
    EXPECT_EQ(out[0], untouched);
    EXPECT_EQ(size, untouchedSize);
}

}  // namespace
