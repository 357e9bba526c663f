// The handles of the simulated agent are counted, and their misuse is noticed.
#include "simulator/SimulatorTest.h"

namespace {

class HandlesTest : public SimulatorTest {
protected:
    // The misuse of the last call, which must be the only one since the last time.
    static std::string TakeMisuse() {
        EXPECT_EQ(ny_sim_misuse_count(), 1U);
        const std::string misuse = ny_sim_last_misuse();
        ny_sim_reset();
        return misuse;
    }

    static std::string Handle(const void* handle) {
        char text[32] = {};
        std::snprintf(text, sizeof text, "0x%llx",
                      static_cast<unsigned long long>(reinterpret_cast<uintptr_t>(handle)));
        return text;
    }
};

TEST_F(HandlesTest, AreCountedByKind) {
    ny_variant_t* const variant = FromJson(R"({"key": "value"})");
    ny_table_t* table = nullptr;
    ny_array_t* keys = nullptr;
    ny_variant_t* key = nullptr;
    ny_buffer_t* buffer = nullptr;
    ny_wbuffer_t* wideBuffer = nullptr;
    ny_logger_t* logger = nullptr;
    ny_client_t* client = nullptr;
    ASSERT_EQ(Call<&ny_variant_get_table>(variant, &table), NY_OK);
    ASSERT_EQ(Call<&ny_table_get_keys>(table, &keys), NY_OK);
    ASSERT_EQ(Call<&ny_array_get_element_at>(keys, size_t{0}, &key), NY_OK);
    ASSERT_EQ(Call<&ny_variant_get_string_buffer>(key, &buffer), NY_OK);
    ASSERT_EQ(Call<&ny_variant_get_wstring_buffer>(key, &wideBuffer), NY_OK);
    ASSERT_EQ(ny_sim_logger_create(&logger), NY_OK);
    ASSERT_EQ(Call<&ny_client_handler_create>("PRODUCT1000", &client), NY_OK);
    EXPECT_EQ(ny_sim_live_handles(NY_SIM_VARIANT), 2U);
    for (const ny_sim_handle_kind kind :
         {NY_SIM_TABLE, NY_SIM_ARRAY, NY_SIM_BUFFER, NY_SIM_WBUFFER, NY_SIM_LOGGER, NY_SIM_CLIENT}) {
        EXPECT_EQ(ny_sim_live_handles(kind), 1U) << kind;
    }
    EXPECT_EQ(ny_sim_live_handles(NY_SIM_PROPERTY_BAG), 0U);
    EXPECT_EQ(ny_sim_live_handles(NY_SIM_ANY), 8U);
    EXPECT_EQ(Call<&ny_client_handler_release>(client), NY_OK);
    ny_sim_logger_release(logger);
    EXPECT_EQ(Call<&ny_wbuffer_release>(wideBuffer), NY_OK);
    EXPECT_EQ(Call<&ny_buffer_release>(buffer), NY_OK);
    EXPECT_EQ(Call<&ny_variant_release>(key), NY_OK);
    EXPECT_EQ(Call<&ny_array_release>(keys), NY_OK);
    EXPECT_EQ(Call<&ny_table_release>(table), NY_OK);
    EXPECT_EQ(Call<&ny_variant_release>(variant), NY_OK);
    EXPECT_EQ(ny_sim_live_handles(NY_SIM_ANY), 0U);
}

TEST_F(HandlesTest, HandedOutTwiceAreReleasedTwice) {
    ny_variant_t* const variant = FromJson("{}");
    ny_table_t* first = nullptr;
    ny_table_t* second = nullptr;
    ASSERT_EQ(Call<&ny_variant_get_table>(variant, &first), NY_OK);
    ASSERT_EQ(Call<&ny_variant_get_table>(variant, &second), NY_OK);
    EXPECT_EQ(first, second);
    EXPECT_EQ(Call<&ny_table_release>(first), NY_OK);
    EXPECT_EQ(ny_sim_live_handles(NY_SIM_TABLE), 1U);
    EXPECT_EQ(Call<&ny_table_release>(first), NY_OK);
    EXPECT_EQ(ny_sim_live_handles(NY_SIM_TABLE), 0U);
    EXPECT_EQ(Call<&ny_variant_release>(variant), NY_OK);
}

TEST_F(HandlesTest, ReleasedTwiceAreMisused) {
    ny_variant_t* const variant = FromJson("1");
    EXPECT_EQ(Call<&ny_variant_release>(variant), NY_OK);
    EXPECT_EQ(ny_sim_misuse_count(), 0U);
    EXPECT_STREQ(ny_sim_last_misuse(), "");
    EXPECT_EQ(Call<&ny_variant_release>(variant), NY_INVALID_ARGUMENT);
    EXPECT_EQ(TakeMisuse(), "ny_variant_release: the variant handle " + Handle(variant) + " is not alive");
}

TEST_F(HandlesTest, UsedAfterTheirReleaseAreMisused) {
    ny_variant_t* const dead = FromJson("1");
    EXPECT_EQ(Call<&ny_variant_release>(dead), NY_OK);
    ny_variant_t* const younger = FromJson("2");
    EXPECT_NE(younger, dead);
    const char* text = nullptr;
    size_t length = 0;
    EXPECT_EQ(Call<&ny_variant_get_string>(dead, &text, &length), NY_INVALID_ARGUMENT);
    EXPECT_EQ(TakeMisuse(), "ny_variant_get_string: the variant handle " + Handle(dead) + " is not alive");
    EXPECT_EQ(text, nullptr);
    EXPECT_EQ(Call<&ny_variant_release>(younger), NY_OK);
}

TEST_F(HandlesTest, OfAnotherKindAreMisused) {
    ny_variant_t* const variant = FromJson("1");
    EXPECT_EQ(Call<&ny_buffer_release>(reinterpret_cast<ny_buffer_t*>(variant)), NY_INVALID_ARGUMENT);
    EXPECT_EQ(TakeMisuse(), "ny_buffer_release: the buffer handle " + Handle(variant) + " is of another kind");
    EXPECT_EQ(Call<&ny_variant_release>(variant), NY_OK);
}

TEST_F(HandlesTest, ThatAreNullAreNotMisused) {
    EXPECT_EQ(Call<&ny_variant_release>(nullptr), NY_INVALID_ARGUMENT);
    EXPECT_EQ(Call<&ny_array_size>(nullptr, nullptr), NY_INVALID_ARGUMENT);
    EXPECT_EQ(ny_sim_misuse_count(), 0U);
}

TEST_F(HandlesTest, StayAliveThroughAReset) {
    ny_variant_t* const variant = FromJson("1");
    ny_sim_reset();
    EXPECT_EQ(ny_sim_live_handles(NY_SIM_ANY), 1U);
    EXPECT_EQ(Call<&ny_variant_release>(variant), NY_OK);
}

}  // namespace
