#pragma once

#include "VsMsgbus.h"
#include "registration/Visits.h"
#include "support/AgentRequest.h"
#include "support/Collector.h"

// Property collection, as the tests of this room use each of the four services.
struct PropertyService {
    static constexpr uint32_t mask = VsMsgbusServiceProperty;
    static constexpr int kind = 8192;
    static constexpr char registering[] = "ny_property_register_provider_callback";
    static constexpr char unregistering[] = "ny_property_unregister_provider_callback";
    static constexpr auto Set = &VsKitMsgbusSetCollectProperties;
    static constexpr auto Remove = &VsKitMsgbusRemoveCollectProperties;

    struct Module {
        // The module calls `act` in each callback. `lentWorks` says whether the setter still works after that.
        std::function<void()> act;
        bool lentWorks = true;
        Visits visits;
        Collector object{[this](VsKitMsgbus::INYCollectProperties::ISet& set) {
            visits.Begin();
            if (act) {
                act();
            }
            EXPECT_EQ(set.SetProperty(L"general", L"version", L"1.0"), lentWorks);
        }};

        Module() {
            // The end of a collection.
            object.getLogLevel = [this] {
                visits.End();
                return 0;
            };
        }
    };

    // The agent asks a product on a thread of its own.
    using Request = AgentRequest;
    // The number of variants that the bridge has released before a second request waits for its turn.
    static constexpr size_t releasesBeforeSecondTurn = 2;

    // The answer with what the agent was given: when the module was called, when there is none, when it threw, when its
    // product was the last one and left inside, and when it then threw.
    static constexpr char called[] = "answer 0, general:version=1.0";
    static constexpr char notCalled[] = "answer 0";
    static constexpr char failed[] = "answer 3";
    static constexpr char left[] = "answer 0";
    static constexpr char leftAndFailed[] = "answer 3";
    static std::string OutcomeOf(const Request& request) {
        std::string outcome = "answer " + std::to_string(request.Answer());
        for (const std::string& property : request.Properties()) {
            outcome += ", " + property;
        }
        return outcome;
    }

    // The agent asks all that there is to ask: with a module, without one, and what the module notes.
    static constexpr const char* asked = called;
    static constexpr const char* askedInVain = notCalled;
    static constexpr const char* askedAndFailed = failed;
    static std::string Ask(const std::string& productId) { return OutcomeOf(Request(productId)); }
    // Calls `check` with each request that the agent makes of the product.
    template <typename Check>
    static void ForEachRequest(const std::string& productId, const Check& check) {
        check(Request(productId));
    }
    static std::vector<std::string> NotesOf(const std::string& /*productId*/) {
        return {"CollectProperties(true)", "GetLogLevel"};
    }

    // The answer when the module throws the agent's exception with this code; and the properties in the answer when the
    // module throws as it is asked for its log level.
    static std::string FailedWith(int32_t code) { return "answer " + std::to_string(code); }
    static constexpr char givenBeforeLogLevel[] = ", general:version=1.0";
    // The lines that the bridge writes to the sink for a request that found no module, and for one that failed.
    static std::vector<std::string> LinesInVain() { return {}; }
    static std::vector<std::string> LinesOfFailure(const std::string& productId, const std::string& reason) {
        return {"3: Failed to add property in the property bag for product id " + productId + reason};
    }

    static bool IsKnownToAgent(const char* productId) { return ny_sim_has_property_provider(productId) != 0; }
    static void Prepare() {}
};
