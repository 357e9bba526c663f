#pragma once

#include "VsMsgbus.h"
#include "registration/Visits.h"
#include "support/Enforcer.h"
#include "support/PolicyNotice.h"

// Policy enforcement, as the tests of this room use it; PropertyService.h says what the names mean.
struct PolicyService {
    static constexpr uint32_t mask = VsMsgbusServicePolicy;
    static constexpr int kind = 4096;
    static constexpr char registering[] = "ny_policy_register_notification_callback";
    static constexpr char unregistering[] = "ny_policy_unregister_notification_callback";
    static constexpr auto Set = &VsKitMsgbusSetEnforcePolicy;
    static constexpr auto Remove = &VsKitMsgbusRemoveEnforcerPolicy;

    struct Module {
        std::function<void()> act;
        bool lentWorks = true;
        Visits visits;
        Enforcer object{[this](IPolicyBag& bag) {
            if (act) {
                act();
            }
            EXPECT_EQ(bag.GetDigest("PRODUCT1000"), lentWorks ? "d" : "");
            visits.End();
        }};

        Module() {
            // The beginning of an enforcement.
            object.getLogLevel = [this] {
                visits.Begin();
                return 0;
            };
        }
    };

    using Request = PolicyNotice;
    static constexpr size_t releasesBeforeSecondTurn = 2;

    static constexpr char called[] = "answer 0";
    static constexpr char notCalled[] = "answer 0";
    static constexpr char failed[] = "answer 3";
    static constexpr char left[] = "answer 0";
    static constexpr char leftAndFailed[] = "answer 3";
    static std::string OutcomeOf(const Request& request) { return "answer " + std::to_string(request.Answer()); }

    static constexpr const char* asked = called;
    static constexpr const char* askedInVain = notCalled;
    static constexpr const char* askedAndFailed = failed;
    static std::string Ask(const std::string& productId) { return OutcomeOf(Request(productId)); }
    template <typename Check>
    static void ForEachRequest(const std::string& productId, const Check& check) {
        check(Request(productId));
    }
    static std::vector<std::string> NotesOf(const std::string& productId) {
        return {"GetLogLevel", "EnforcePolicy " + productId};
    }

    static std::string FailedWith(int32_t code) { return "answer " + std::to_string(code); }
    static constexpr char givenBeforeLogLevel[] = "";
    static std::vector<std::string> LinesInVain() {
        return {"3: Policy collection was not completed for product id PRODUCT1000"};
    }
    static std::vector<std::string> LinesOfFailure(const std::string& productId, const std::string& reason) {
        return {"3: Failed to get the policy for product id " + productId + reason};
    }

    static bool IsKnownToAgent(const char* productId) { return ny_sim_has_policy_callback(productId) != 0; }
    static void Prepare() {
        EXPECT_EQ(ny_sim_policies_from_json(R"([{"softwareId": "PRODUCT1000", "settingsObject": {"digest": "d"}}])"),
                  NY_OK);
    }
};
