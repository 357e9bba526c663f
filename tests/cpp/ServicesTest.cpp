// The agent's crypto and information through the C++ layer.
#include "cpp/LayerTest.h"

using vsmsgbus::Bytes;

namespace {

class LayerServices : public LayerTest {
protected:
    vsmsgbus::Product product{id, {.properties = [](vsmsgbus::Properties& /*properties*/) {}}};

    void TearDown() override {
        product.Leave();
        LayerTest::TearDown();
    }
};

TEST_F(LayerServices, EncryptAndDecryptDataOfAnySize) {
    for (const size_t size : {0U, 1U, 15U, 16U, 4096U, 100000U}) {
        const Bytes plain(size, 'x');
        const Bytes encrypted = vsmsgbus::Encrypt(plain, 1);
        EXPECT_GT(encrypted.size(), plain.size());
        EXPECT_EQ(vsmsgbus::Decrypt(encrypted, 1), plain) << size;
    }
}

TEST_F(LayerServices, ThatFailAreErrors) {
    ny_sim_fail_call("ny_crypto_encrypt_data_by_type", 1, 77, NY_SIM_FROM_THEN_ON);
    try {
        vsmsgbus::Encrypt(Bytes(4), 1);
        ADD_FAILURE() << "no error";
    } catch (const vsmsgbus::Error& error) {
        EXPECT_EQ(error.Code(), -1);
        EXPECT_EQ(error.Doing(), "encrypting");
    }
    product.Leave();
    EXPECT_THROW(vsmsgbus::Decrypt(Bytes(4), 1), vsmsgbus::Error);
}

TEST_F(LayerServices, GiveInformationOrNothing) {
    ny_sim_set_information("Version", "\"5.7.0\"");
    ny_sim_set_information("AgentMode", "\"2\"");
    ny_sim_set_information("ofItsOwn", "\"\u00E9\"");
    namespace Information = vsmsgbus::Information;
    EXPECT_EQ(Information::Version(), L"5.7.0");
    EXPECT_EQ(Information::AgentMode(), L"2");
    EXPECT_EQ(Information::ManagedMode(), 2U);
    EXPECT_EQ(Information::ByKey("ofItsOwn"), "\u00E9");
    EXPECT_EQ(Information::ByKey("unknown"), std::nullopt);
    EXPECT_EQ(Information::Guid(), std::nullopt);
    ny_sim_set_information("AgentMode", "\"of a kind of its own\"");
    EXPECT_EQ(Information::ManagedMode(), std::nullopt);
    product.Leave();
    EXPECT_EQ(Information::Version(), std::nullopt);
    EXPECT_EQ(Information::ManagedMode(), std::nullopt);
}

TEST_F(LayerServices, GiveEachInformationUnderItsOwnName) {
    namespace Information = vsmsgbus::Information;
    const std::pair<const char*, std::optional<std::wstring> (*)()> all[] = {
        {"AgentMode", Information::AgentMode},      {"GUID", Information::Guid},
        {"LogLocation", Information::LogLocation},  {"RdxServerLastUsed", Information::LastServer},
        {"RdxPortLastUsed", Information::LastPort}, {"RdxServerList", Information::Servers},
        {"RdxPortList", Information::Ports},        {"Version", Information::Version},
        {"LastASCTime", Information::LastContact},  {"LastPolicyUpdateTime", Information::LastPolicyUpdate},
        {"CryptoMode", Information::CryptoMode},
    };
    for (const auto& [key, read] : all) {
        ny_sim_set_information(key, ("\"of " + std::string(key) + "\"").c_str());
        EXPECT_EQ(read(), L"of " + vsmsgbus::Wide(key));
    }
}

}  // namespace
