#pragma once

#include <string>

#include "simulator/SimulatorTest.h"

// Shorthands for its policy functions.
class PolicySimulatorTest : public SimulatedClientTest {
protected:
    static void Hold(const std::string& json) { ASSERT_EQ(ny_sim_policies_from_json(json.c_str()), NY_OK); }

    // A uri that the test releases; a null user sets none.
    ny_policy_uri_t* Uri(const char* softwareId, const char* user = nullptr) const {
        ny_policy_uri_t* uri = nullptr;
        EXPECT_EQ(Call<&ny_policy_uri_create>(&uri), NY_OK);
        EXPECT_EQ(Call<&ny_policy_uri_set_software_id>(uri, softwareId), NY_OK);
        if (user != nullptr) {
            EXPECT_EQ(Call<&ny_policy_uri_set_user>(uri, user), NY_OK);
        }
        return uri;
    }

    // A bag that the test releases.
    ny_policy_bag_t* Fetch(const char* softwareId, const char* user = nullptr) const {
        ny_policy_uri_t* const uri = Uri(softwareId, user);
        ny_policy_bag_t* bag = nullptr;
        EXPECT_EQ(Call<&ny_policy_get>(client, uri, &bag), NY_OK);
        EXPECT_EQ(Call<&ny_policy_uri_release>(uri), NY_OK);
        return bag;
    }

    ny_policy_bag_iterator_t* Uris(ny_policy_bag_t* bag) const {
        ny_policy_bag_iterator_t* iterator = nullptr;
        EXPECT_EQ(Call<&ny_policy_bag_get_uri_iterator>(bag, &iterator), NY_OK);
        return iterator;
    }

    void Release(ny_policy_bag_iterator_t* iterator) const {
        EXPECT_EQ(Call<&ny_policy_bag_iterator_release>(iterator), NY_OK);
    }
    void Release(ny_policy_bag_t* bag) const { EXPECT_EQ(Call<&ny_policy_bag_release>(bag), NY_OK); }
};
