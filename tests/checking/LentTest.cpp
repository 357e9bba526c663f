// The checking bridge's findings about objects and texts that a module uses after the callback for which they were
// lent.
#include <thread>

#include "checking/CheckedTest.h"
#include "support/AgentTasks.h"
#include "support/AgentUpdate.h"
#include "support/Enforcer.h"
#include "support/PolicyNotice.h"
#include "support/TaskEnforcer.h"
#include "support/UpdateCallback.h"

namespace {

class CheckedLoans : public CheckedTest {
protected:
    // A walk that goes on everywhere.
    class Walker final : public IPolicyBag::ICallbacks {
    public:
        bool OnContainer(const wchar_t*, const wchar_t*, const wchar_t*, const wchar_t*) override { return goOn; }
        bool OnSettings(const wchar_t*, const wchar_t*, const wchar_t*) override { return true; }
        bool OnSection(const wchar_t*, const wchar_t*) override { return true; }
        bool OnSetting(const wchar_t*, const wchar_t*, const wchar_t* value) override {
            seen += Narrow(value) + ";";
            kept = value;
            return true;
        }

        bool goOn = true;
        std::string seen;
        const wchar_t* kept = nullptr;
    };

    void SetPolicies() const {
        const std::string policies = R"([{"softwareId": ")" + id + R"(", "feature": "F", "category": "C", "type": "T",
            "name": "N", "settingsObject": {"name": "P", "intParameter": "1", "stringParameter": "a"},
            "sections": [{"name": "S", "settings": {"a": "1", "b": "2"}}]}])";
        EXPECT_EQ(ny_sim_policies_from_json(policies.c_str()), NY_OK);
    }

    int32_t Notify(const std::function<void(IPolicyBag&)>& enforce) {
        Enforcer enforcer(enforce);
        const EnforcerRegistration registration(id, enforcer);
        const Product product(id, &sink, VsMsgbusServicePolicy);
        return PolicyNotice(id).Answer();
    }

    Walker walker;
};

TEST_F(CheckedLoans, AnAccessViolationOnAKeptTextIsNamed) {
    // Makes the text readable again, behind the checks.
    void* const handler = ::AddVectoredExceptionHandler(FALSE, [](EXCEPTION_POINTERS* raised) -> LONG {
        DWORD protection = 0;
        return ::VirtualProtect(reinterpret_cast<void*>(raised->ExceptionRecord->ExceptionInformation[1]), 1,
                                PAGE_READWRITE, &protection)
                   ? EXCEPTION_CONTINUE_EXECUTION
                   : EXCEPTION_CONTINUE_SEARCH;
    });
    struct Keeping final : VsKitMsgbus::INYTaskEnforcer {
        int32_t ExecuteTask(const wchar_t* taskId, ITaskBag*) override {
            kept = taskId;
            return Succeeded;
        }
        int32_t UpdateTaskStatus(const wchar_t*, ITaskBag*) override { return Succeeded; }
        int32_t StopTask(const wchar_t*, ITaskBag*) override { return Succeeded; }
        int32_t RemoveTask(const wchar_t*, ITaskBag*) override { return Succeeded; }
        void FreeCookie(void*) override {}
        const wchar_t* kept = nullptr;
    } tasks;
    EXPECT_TRUE(VsKitMsgbusSetTaskEnforcer(wideId.c_str(), &tasks, nullptr));
    {
        const Product product(id, &sink, VsMsgbusServiceTask);
        SetTasks(R"([{"id": "task", "product": ")" + id + R"("}])");
        EXPECT_EQ(AnswerOf("task"), NY_OK);
    }
    EXPECT_EQ(*static_cast<const volatile wchar_t*>(tasks.kept), 0xDDDD);
    ::RemoveVectoredExceptionHandler(handler);
    EXPECT_EQ(Found("TEXT-KEPT"), 1U);
    EXPECT_TRUE(VsKitMsgbusRemoveTaskEnforcer(wideId.c_str()));
    ny_sim_reset();
}

TEST_F(CheckedLoans, ASetThatIsUsedAfterItsCallIsNamed) {
    VsKitMsgbus::INYCollectProperties::ISet* kept = nullptr;
    collector.collect = [&](auto& set) {
        EXPECT_TRUE(set.SetProperty(L"general", L"version", L"1.0"));
        kept = &set;
    };
    const Registration registration(id, collector);
    const Product product(id, &sink);
    EXPECT_EQ(Ask(id), answered);
    EXPECT_EQ(Found("LENT-KEPT"), 0U);
    EXPECT_FALSE(kept->SetProperty(L"general", L"version", L"1.0"));
    EXPECT_EQ(Found("LENT-KEPT"), 1U);
    EXPECT_EQ(OnlyLine(),
              "VsMsgbus check [LENT-KEPT] " + id +
                  ": SetProperty is called on the object that CollectProperties was given, after that has "
                  "returned: the object belongs to the bridge and is gone; the call is answered as a failure. "
                  "Use it inside the callback alone, and keep the values instead. (thread )");
}

TEST_F(CheckedLoans, APolicyBagThatIsUsedAfterItsCallIsNamed) {
    IPolicyBag* kept = nullptr;
    EXPECT_EQ(Notify([&](IPolicyBag& bag) { kept = &bag; }), NY_OK);
    EXPECT_FALSE(kept->EnumeratePolicies(wideId.c_str(), &walker));
    EXPECT_EQ(Found("LENT-KEPT"), 1U);
}

TEST_F(CheckedLoans, APolicyBagOnAnotherThreadIsNamed) {
    EXPECT_EQ(Notify([&](IPolicyBag& bag) {
                  std::thread([&] { EXPECT_TRUE(bag.EnumeratePolicies(wideId.c_str(), &walker)); }).join();
              }),
              NY_OK);
    EXPECT_EQ(Found("LENT-OTHER-THREAD"), 1U);
}

TEST_F(CheckedLoans, AWalkInsideItsCallIsRight) {
    SetPolicies();
    EXPECT_EQ(Notify([&](IPolicyBag& bag) { EXPECT_TRUE(bag.EnumeratePolicies(wideId.c_str(), &walker)); }), NY_OK);
    EXPECT_EQ(walker.seen, "1;2;");
    ny_sim_reset();
}

TEST_F(CheckedLoans, AWalkOfAnotherIdIsNamed) {
    SetPolicies();
    EXPECT_EQ(Notify([&](IPolicyBag& bag) { EXPECT_TRUE(bag.EnumeratePolicies(L"OTHER", &walker)); }), NY_OK);
    EXPECT_EQ(walker.seen, "");
    EXPECT_EQ(Found("WALK-OF-OTHER-ID"), 1U);
    ny_sim_reset();
}

TEST_F(CheckedLoans, AWalkWhoseCallbackRefusesEverythingIsNamed) {
    SetPolicies();
    walker.goOn = false;
    EXPECT_EQ(Notify([&](IPolicyBag& bag) { EXPECT_TRUE(bag.EnumeratePolicies(wideId.c_str(), &walker)); }), NY_OK);
    EXPECT_EQ(Found("WALK-REFUSED"), 1U);
    ny_sim_reset();
}

TEST_F(CheckedLoans, AWalkThatRefusesWhatAnotherOneTakesIsRight) {
    SetPolicies();
    EXPECT_EQ(Notify([&](IPolicyBag& bag) {
                  walker.goOn = false;
                  EXPECT_TRUE(bag.EnumeratePolicies(wideId.c_str(), &walker));
                  walker.goOn = true;
                  EXPECT_TRUE(bag.EnumeratePolicies(wideId.c_str(), &walker));
              }),
              NY_OK);
    ny_sim_reset();
}

TEST_F(CheckedLoans, AnUpdateSetThatIsUsedAfterItsCallIsNamed) {
    VsKitMsgbus::INYUpdateNotifyCallback::ISet* kept = nullptr;
    UpdateCallback callback;
    callback.onGet = [&](auto& set) {
        EXPECT_TRUE(set.Set(L"value"));
        kept = &set;
        return 0;
    };
    const UpdateRegistration registration(id, callback);
    const Product product(id, &sink, VsMsgbusServiceUpdate);
    EXPECT_EQ(Update(GetCall(id)), "answer 0, result 0, value <value>");
    EXPECT_TRUE(kept->Set(L"late"));
    EXPECT_EQ(Found("LENT-KEPT"), 1U);
}

}  // namespace
