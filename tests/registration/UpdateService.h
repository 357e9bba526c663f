#pragma once

#include "VsMsgbus.h"
#include "registration/Visits.h"
#include "support/AgentUpdate.h"
#include "support/UpdateCallback.h"

// Updates, as the tests of this room use them; PropertyService.h says what the names mean.
struct UpdateService {
    static constexpr uint32_t mask = VsMsgbusServiceUpdate;
    static constexpr int kind = 256;
    static constexpr char registering[] = "ny_updater_register_callbacks";
    static constexpr char unregistering[] = "ny_updater_unregister_callbacks";
    static constexpr auto Set = &VsKitMsgbusSetUpdateNotify;
    static constexpr auto Remove = &VsKitMsgbusRemoveUpdateNotify;

    struct Module {
        std::function<void()> act;
        // The receiver of a value takes one at any time.
        bool lentWorks = true;
        Visits visits;
        UpdateCallback object;

        Module() {
            object.onNotify = [this](uint32_t&) { return Answer(UpdateCallback::notified); };
            object.onSet = [this] { return Answer(UpdateCallback::set); };
            object.onGet = [this](VsKitMsgbus::INYUpdateNotifyCallback::ISet& set) {
                EXPECT_TRUE(set.Set(L"a first value"));
                const int32_t answer = Answer(UpdateCallback::got);
                EXPECT_TRUE(set.Set(L"value"));
                return answer;
            };
        }

    private:
        int32_t Answer(int32_t answer) {
            visits.Begin();
            if (act) {
                act();
            }
            visits.End();
            return answer;
        }
    };

    struct Request : AgentUpdate {
        explicit Request(const std::string& productId) : AgentUpdate(GetCall(productId)) {}
    };
    static constexpr size_t releasesBeforeSecondTurn = 4;

    static constexpr char called[] = "answer 0, result 30, value <value>";
    static constexpr char notCalled[] = "answer 0, result 1";
    static constexpr char failed[] = "answer 0, result 1";
    // The product has left: no value is made.
    static constexpr char left[] = "answer 0, result 1";
    static constexpr char leftAndFailed[] = "answer 0, result 1";
    static std::string OutcomeOf(const Request& request) { return request.Outcome(); }

    static constexpr char asked[] = "answer 0, result 20; answer 0, result 40; answer 0, result 30, value <value>; ";
    static constexpr char askedInVain[] = "answer 0, result 2; answer 0, result 1; answer 0, result 1; ";
    static constexpr const char* askedAndFailed = askedInVain;
    static std::string Ask(const std::string& productId) {
        std::string outcomes;
        ForEachRequest(productId, [&](const AgentUpdate& update) { outcomes += update.Outcome() + "; "; });
        return outcomes;
    }
    template <typename Check>
    static void ForEachRequest(const std::string& productId, const Check& check) {
        for (const std::string& call : {NotifyCall(productId), SetCall(productId), GetCall(productId)}) {
            check(AgentUpdate(call));
        }
    }
    static std::vector<std::string> NotesOf(const std::string& /*productId*/) {
        return {"UpdateNotify(text 2, text 4, text 3, 7)", "SetProductInfo(text 2, a key, a value)",
                "GetProductInfo(text 2, a key)"};
    }

    static std::string FailedWith(int32_t /*code*/) { return askedAndFailed; }
    static std::vector<std::string> LinesInVain() { return {}; }
    static std::vector<std::string> LinesOfFailure(const std::string& /*productId*/, const std::string& /*reason*/) {
        return {};
    }

    static bool IsKnownToAgent(const char* productId) { return ny_sim_has_updater(productId) != 0; }
    static void Prepare() {}
};
