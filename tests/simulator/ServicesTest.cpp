// The crypto and the information of the simulated agent.
#include <initializer_list>

#include "simulator/SimulatorTest.h"

namespace {

// The hash of no data and of "abc", as the standard's own examples have them.
constexpr unsigned char hashOfNothing[] = {0xe3, 0xb0, 0xc4, 0x42, 0x98, 0xfc, 0x1c, 0x14, 0x9a, 0xfb, 0xf4,
                                           0xc8, 0x99, 0x6f, 0xb9, 0x24, 0x27, 0xae, 0x41, 0xe4, 0x64, 0x9b,
                                           0x93, 0x4c, 0xa4, 0x95, 0x99, 0x1b, 0x78, 0x52, 0xb8, 0x55};
constexpr unsigned char hashOfAbc[] = {0xba, 0x78, 0x16, 0xbf, 0x8f, 0x01, 0xcf, 0xea, 0x41, 0x41, 0x40,
                                       0xde, 0x5d, 0xae, 0x22, 0x23, 0xb0, 0x03, 0x61, 0xa3, 0x96, 0x17,
                                       0x7a, 0x9c, 0xb4, 0x10, 0xff, 0x61, 0xf2, 0x00, 0x15, 0xad};

class Services : public SimulatedClientTest {
protected:
    // The bytes that a crypto function gives in a buffer of `room` bytes at first, or its answer.
    template <auto function>
    std::string Run(const std::string& data, size_t room = 0) {
        ny_buffer_t* buffer = nullptr;
        EXPECT_EQ(Call<&ny_buffer_create>(&buffer, room), NY_OK);
        const int32_t answer = Call<function>(client, uint64_t{7}, reinterpret_cast<const unsigned char*>(data.data()),
                                              static_cast<uint32_t>(data.size()), &buffer);
        const unsigned char* bytes = nullptr;
        size_t size = 0;
        EXPECT_EQ(Call<&ny_buffer_get_raw>(buffer, &bytes, &size), NY_OK);
        std::string result = answer == NY_OK ? std::string(reinterpret_cast<const char*>(bytes), size)
                                             : "answer " + std::to_string(answer);
        EXPECT_EQ(ny_sim_live_handles(NY_SIM_BUFFER), 1U);
        EXPECT_EQ(Call<&ny_buffer_release>(buffer), NY_OK);
        return result;
    }
    std::string Encrypt(const std::string& data) { return Run<&ny_crypto_encrypt_data_by_type>(data, data.size()); }
    std::string Decrypt(const std::string& data) { return Run<&ny_crypto_decrypt_data_by_type>(data, data.size()); }
    std::string Hash(const std::string& data, size_t room = 0) { return Run<&ny_crypto_hash_data_by_type>(data, room); }

    // The value of a key, or the answer.
    std::string Get(const char* key) {
        ny_variant_t* variant = nullptr;
        const int32_t answer = Call<&ny_info_get>(client, key, &variant);
        if (answer != NY_OK) {
            EXPECT_EQ(variant, nullptr);
            return "answer " + std::to_string(answer);
        }
        std::string text = TextOf(variant);
        EXPECT_EQ(Call<&ny_variant_release>(variant), NY_OK);
        return text;
    }

    const std::string notEncrypted = "answer " + std::to_string(NY_SIM_NOT_ENCRYPTED);
    const std::string unknownKey = "answer " + std::to_string(NY_SIM_UNKNOWN_KEY);
};

TEST_F(Services, DecryptWhatTheyEncrypted) {
    constexpr size_t sizes[] = {0, 1, 15, 16, 17, 1000};
    for (const size_t size : sizes) {
        const std::string data(size, 'x');
        const std::string encrypted = Encrypt(data);
        EXPECT_EQ(encrypted.size(), 16 + size / 16 * 16 + 16);
        EXPECT_EQ(Decrypt(encrypted), data);
    }
}

TEST_F(Services, EncryptTheSameDataDifferentlyEachTime) {
    const std::string data(16, 'x');
    const std::string first = Encrypt(data);
    const std::string second = Encrypt(data);
    EXPECT_NE(first, second);
    EXPECT_EQ(first.find(data), std::string::npos);
    EXPECT_EQ(Decrypt(first), Decrypt(second));
}

TEST_F(Services, DecryptNothingElse) {
    constexpr size_t sizes[] = {0, 15, 16, 31, 33};
    for (const size_t size : sizes) {
        EXPECT_EQ(Decrypt(std::string(size, 'x')), notEncrypted) << size;
    }
    const std::string encrypted = Encrypt("text");
    EXPECT_EQ(Decrypt(encrypted.substr(0, 16)), notEncrypted);
    EXPECT_EQ(Decrypt(encrypted + "x"), notEncrypted);
}

TEST_F(Services, HashAsTheStandardSays) {
    EXPECT_EQ(Hash(""), std::string(std::begin(hashOfNothing), std::end(hashOfNothing)));
    constexpr size_t rooms[] = {0, 31, 32, 100};
    for (const size_t room : rooms) {
        EXPECT_EQ(Hash("abc", room), std::string(std::begin(hashOfAbc), std::end(hashOfAbc)));
    }
}

TEST_F(Services, ReplaceABufferOnlyWhenItIsTooSmall) {
    const unsigned char byte = 1;
    // A hash has 32 bytes.
    for (const auto& [room, isReplaced] : {std::pair{size_t{31}, true}, std::pair{size_t{32}, false}}) {
        ny_buffer_t* buffer = nullptr;
        ASSERT_EQ(Call<&ny_buffer_create>(&buffer, room), NY_OK);
        ny_buffer_t* const given = buffer;
        ASSERT_EQ(Call<&ny_crypto_hash_data_by_type>(client, uint64_t{0}, &byte, uint32_t{1}, &buffer), NY_OK);
        EXPECT_EQ(buffer != given, isReplaced);
        EXPECT_EQ(ny_sim_live_handles(NY_SIM_BUFFER), 1U);
        EXPECT_EQ(Call<&ny_buffer_release>(buffer), NY_OK);
    }
}

TEST_F(Services, RememberTheType) {
    Hash("abc");
    EXPECT_EQ(ny_sim_last_crypto_type(), 7U);
    ny_buffer_t* buffer = nullptr;
    ASSERT_EQ(Call<&ny_buffer_create>(&buffer, size_t{0}), NY_OK);
    ny_buffer_t* none = nullptr;
    EXPECT_EQ(Call<&ny_crypto_hash_data_by_type>(client, uint64_t{8}, nullptr, uint32_t{1}, &buffer),
              NY_INVALID_ARGUMENT);
    EXPECT_EQ(Call<&ny_crypto_hash_data_by_type>(client, uint64_t{8}, nullptr, uint32_t{0}, nullptr),
              NY_INVALID_ARGUMENT);
    EXPECT_EQ(Call<&ny_crypto_hash_data_by_type>(client, uint64_t{8}, nullptr, uint32_t{0}, &none),
              NY_INVALID_ARGUMENT);
    EXPECT_EQ(Call<&ny_crypto_hash_data_by_type>(nullptr, uint64_t{8}, nullptr, uint32_t{0}, &buffer),
              NY_INVALID_ARGUMENT);
    EXPECT_EQ(ny_sim_last_crypto_type(), 7U);
    EXPECT_EQ(Call<&ny_crypto_hash_data_by_type>(client, UINT64_MAX, nullptr, uint32_t{0}, &buffer), NY_OK);
    EXPECT_EQ(ny_sim_last_crypto_type(), UINT64_MAX);
    EXPECT_EQ(Call<&ny_buffer_release>(buffer), NY_OK);
}

TEST_F(Services, FailWhereTheyAreToldTo) {
    for (const char* const function : {"ny_crypto_encrypt_data_by_type", "ny_crypto_decrypt_data_by_type",
                                       "ny_crypto_hash_data_by_type", "ny_info_get"}) {
        ASSERT_EQ(ny_sim_fail_call(function, 1, 77, NY_SIM_ONCE), NY_OK);
    }
    EXPECT_EQ(Encrypt("x"), "answer 77");
    EXPECT_EQ(Decrypt("x"), "answer 77");
    EXPECT_EQ(Hash("x"), "answer 77");
    EXPECT_EQ(Get("x"), "answer 77");
}

TEST_F(Services, TellTheInformationThatWasSet) {
    EXPECT_EQ(Get("Version"), unknownKey);
    EXPECT_EQ(ny_sim_set_information("Version", "\"5.7\""), NY_OK);
    EXPECT_EQ(Get("Version"), "5.7");
    EXPECT_EQ(ny_sim_set_information("Version", "5.8"), NY_OK);
    EXPECT_EQ(Get("Version"), "5.8");
    EXPECT_EQ(Get("version"), unknownKey);
    EXPECT_EQ(ny_sim_set_information("Version", nullptr), NY_OK);
    EXPECT_EQ(Get("Version"), unknownKey);
}

TEST_F(Services, TakeAllInformationAsOneObject) {
    EXPECT_EQ(ny_sim_set_information("GUID", "\"gone\""), NY_OK);
    EXPECT_EQ(ny_sim_set_all_information(R"({"AgentMode": "1", "": "nameless", "RdxPortLastUsed": 443})"), NY_OK);
    EXPECT_EQ(Get("AgentMode"), "1");
    EXPECT_EQ(Get(""), "nameless");
    EXPECT_EQ(Get("RdxPortLastUsed"), "443");
    EXPECT_EQ(Get("GUID"), unknownKey);
    ny_sim_reset();
    EXPECT_EQ(Get("AgentMode"), unknownKey);
}

TEST_F(Services, RefuseNonsenseAboutInformation) {
    EXPECT_EQ(ny_sim_set_information("Version", "\"5.7\""), NY_OK);
    for (const char* const json : {"", "[]", "\"text\"", "{"}) {
        EXPECT_EQ(ny_sim_set_all_information(json), NY_INVALID_ARGUMENT) << json;
    }
    EXPECT_EQ(ny_sim_set_all_information(nullptr), NY_INVALID_ARGUMENT);
    EXPECT_EQ(ny_sim_set_information(nullptr, "1"), NY_INVALID_ARGUMENT);
    EXPECT_EQ(ny_sim_set_information("Version", "{"), NY_INVALID_ARGUMENT);
    EXPECT_EQ(Get("Version"), "5.7");
    EXPECT_EQ(Get(nullptr), "answer 1");
    EXPECT_EQ(Call<&ny_info_get>(client, "Version", nullptr), NY_INVALID_ARGUMENT);
}

}  // namespace
