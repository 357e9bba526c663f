// Every agent call that the bridge makes for policies answers an error: the first of a function and each later one.
// Which calls there are is read from the record of a run without errors, so that none is forgotten.
#include <algorithm>

#include "policy/PolicyTest.h"
#include "support/KeptHandles.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

// Two policies, two sections, two settings: every call is made more than once.
constexpr char twoOfEach[] = R"([
    {"softwareId": "PRODUCT1000", "feature": "F1", "category": "C1", "type": "T1", "name": "N1",
     "settingsObject": {"name": "P1", "intParameter": "1", "stringParameter": "a", "digest": "d1"},
     "sections": [{"name": "S1", "settings": {"x": "1", "y": "2"}}, {"name": "S2", "settings": {"z": "3"}}]},
    {"softwareId": "PRODUCT1000", "feature": "F2", "category": "C2", "type": "T2", "name": "N2",
     "settingsObject": {"name": "P2", "intParameter": "2", "stringParameter": "b", "digest": "d2"},
     "sections": [{"name": "S3", "settings": {"w": "4"}}]},
    {"softwareId": "PRODUCT1000", "user": "DOMAIN\\user", "feature": "F", "category": "C", "type": "T", "name": "N",
     "settingsObject": {"name": "P", "intParameter": "1", "stringParameter": "a", "digest": "u"},
     "sections": [{"name": "S", "settings": {"x": "1", "y": "2"}}, {"name": "R", "settings": {"z": "3"}}]}])";

// Whether the bridge does nothing about an error of that function: what the agent then keeps is the agent's.
bool IsRelease(const std::string& function) {
    return function.ends_with("_release");
}

bool IsBeginOf(const Lines& lines, const Lines& whole) {
    return lines.size() <= whole.size() && std::equal(lines.begin(), lines.end(), whole.begin());
}

class PolicyFault : public PolicyTest, public testing::WithParamInterface<int32_t> {
protected:
    void SetUp() override { HoldPolicies(twoOfEach); }

    std::string Code() const { return std::to_string(GetParam()); }

    // Runs `good()`, then `faulty(function)` once for each agent call of it, with that call failing.
    template <class Good, class Faulty>
    void ForEachCall(Good&& good, Faulty&& faulty) {
        ny_sim_clear_calls();
        good();
        const Lines calls = AgentCalls();
        ASSERT_FALSE(calls.empty());
        for (auto call = calls.begin(); call != calls.end(); ++call) {
            const auto nth = static_cast<uint32_t>(std::count(calls.begin(), call + 1, *call));
            ASSERT_EQ(ny_sim_fail_call(call->c_str(), nth, GetParam(), NY_SIM_ONCE), NY_OK);
            SCOPED_TRACE(*call + " at call " + std::to_string(nth));
            const size_t before = ny_sim_live_handles(NY_SIM_ANY);
            const size_t keptByFault = IsRelease(*call) ? 1 : 0;
            faulty(*call);
            // A fault that was not met must not strike later.
            ny_sim_clear_faults();
            EXPECT_EQ(ny_sim_live_handles(NY_SIM_ANY), before + keptByFault);
            releaseFaults += keptByFault;
        }
    }

    // The same for a walk within one EnforcePolicy: `walk(bag, callbacks)`.
    template <class Walk>
    void ExpectFailuresOf(Walk&& walk) {
        EXPECT_EQ(Enforce([&](IPolicyBag& bag) {
                      NotingCallbacks whole;
                      const auto good = [&] { EXPECT_TRUE(walk(bag, whole)); };
                      ForEachCall(good, [&](const std::string& function) {
                          NotingCallbacks callbacks;
                          const bool isWhole = walk(bag, callbacks);
                          EXPECT_EQ(isWhole, IsRelease(function));
                          if (isWhole) {
                              EXPECT_EQ(callbacks.lines, whole.lines);
                              EXPECT_THAT(modulesSink.log.Take(), IsEmpty());
                          } else {
                              EXPECT_TRUE(IsBeginOf(callbacks.lines, whole.lines));
                              EXPECT_THAT(modulesSink.log.Take(), ElementsAre(iterationLine + Code()));
                          }
                      });
                  }),
                  NY_OK);
        EXPECT_THAT(sink.log.Lines(), IsEmpty());
        product.Exit();
        EXPECT_EQ(kept.Release(), releaseFaults);
    }

    KeptHandles kept;
    size_t releaseFaults = 0;
};

TEST_P(PolicyFault, InAWalkEndsTheWalk) {
    ExpectFailuresOf([](IPolicyBag& bag, ICallbacks& callbacks) { return bag.EnumeratePolicies(wideId, &callbacks); });
}

TEST_P(PolicyFault, InAUsersWalkEndsTheWalk) {
    ExpectFailuresOf([](IPolicyBag& bag, ICallbacks& callbacks) {
        return bag.EnumerateUserPolicies(wideId, &callbacks, L"user", L"DOMAIN");
    });
}

TEST_P(PolicyFault, InADigestEndsIt) {
    EXPECT_EQ(Enforce([&](IPolicyBag& bag) {
                  ForEachCall([&] { EXPECT_EQ(bag.GetDigest("PRODUCT1000"), "d1d2"); },
                              [&](const std::string& function) {
                                  const std::string digest = bag.GetDigest("PRODUCT1000");
                                  if (IsRelease(function)) {
                                      EXPECT_EQ(digest, "d1d2");
                                  } else {
                                      EXPECT_THAT(digest, testing::AnyOf("", "d1", "d1d2"));
                                  }
                              });
              }),
              NY_OK);
    EXPECT_THAT(modulesSink.log.Lines(), IsEmpty());
    EXPECT_THAT(sink.log.Lines(), IsEmpty());
    product.Exit();
    EXPECT_EQ(kept.Release(), releaseFaults);
}

TEST_P(PolicyFault, InADumpEndsItsText) {
    EXPECT_EQ(Enforce([&](IPolicyBag& bag) {
                  std::string whole;
                  ForEachCall([&] { whole = Dump(bag); },
                              [&](const std::string& function) {
                                  const std::string text = Dump(bag);
                                  EXPECT_TRUE(whole.starts_with(text));
                                  EXPECT_EQ(modulesSink.log.Take().size(), IsRelease(function) ? 0U : 1U);
                              });
              }),
              NY_OK);
    product.Exit();
    EXPECT_EQ(kept.Release(), releaseFaults);
}

TEST_P(PolicyFault, InANotificationIsItsAnswer) {
    const EnforcerRegistration registration(productId, enforcer);
    ForEachCall([] { EXPECT_EQ(PolicyNotice(productId).Answer(), NY_OK); },
                [&](const std::string& function) {
                    enforcer.log.Take();
                    const int32_t answer = PolicyNotice(productId).Answer();
                    if (IsRelease(function)) {
                        EXPECT_EQ(answer, NY_OK);
                        EXPECT_THAT(enforcer.log.Take(), ElementsAre("GetLogLevel", "EnforcePolicy PRODUCT1000"));
                        EXPECT_THAT(sink.log.Take(), IsEmpty());
                    } else if (function == "ny_policy_uri_add_ref") {
                        EXPECT_EQ(answer, NY_UNEXPECTED);
                        EXPECT_THAT(enforcer.log.Take(), IsEmpty());
                        EXPECT_THAT(sink.log.Take(), IsEmpty());
                    } else {
                        EXPECT_EQ(answer, GetParam());
                        EXPECT_THAT(enforcer.log.Take(), IsEmpty());
                        EXPECT_THAT(sink.log.Take(),
                                    ElementsAre("3: Failed to get the policy for product id PRODUCT1000, exception: [" +
                                                Code() + "]"));
                    }
                });
    product.Exit();
    EXPECT_EQ(kept.Release(), releaseFaults);
}

INSTANTIATE_TEST_SUITE_P(Code, PolicyFault, testing::Values(77, -5, 1, 705), NameOfCode);

class PolicyFaultWithoutSink : public PolicyTest {};

TEST_F(PolicyFaultWithoutSink, IsOnlyAnswered) {
    HoldPolicies(twoOfEach);
    ASSERT_EQ(ny_sim_fail_call("ny_policy_get", 1, 77, NY_SIM_FROM_THEN_ON), NY_OK);
    enforcer.enforce = [](IPolicyBag& bag) {
        NotingCallbacks callbacks;
        EXPECT_FALSE(bag.EnumeratePolicies(wideId, &callbacks));
        EXPECT_FALSE(bag.EnumerateUserPolicies(wideId, &callbacks, L"user", L"DOMAIN"));
        EXPECT_EQ(Dump(bag), "");
    };
    const EnforcerRegistration registration(productId, enforcer);
    EXPECT_EQ(PolicyNotice(productId).Answer(), NY_OK);
    EXPECT_THAT(sink.log.Lines(), IsEmpty());
}

// The end of an iteration is no error of the iterators, and an error like any other of all other functions.
TEST_F(PolicyFaultWithoutSink, ThatIsTheEndOfAnIterationEndsThatIterationAlone) {
    HoldPolicies(twoOfEach);
    NotingCallbacks callbacks;
    ny_sim_fail_call("ny_policy_bag_setting_iterator_get_next", 2, NY_ITERATOR_END, NY_SIM_ONCE);
    Enforce([&](IPolicyBag& bag) {
        EXPECT_TRUE(bag.EnumeratePolicies(wideId, &callbacks));
        ny_sim_fail_call("ny_policy_get", 1, NY_ITERATOR_END, NY_SIM_ONCE);
        EXPECT_FALSE(bag.EnumeratePolicies(wideId, &callbacks));
    });
    EXPECT_THAT(callbacks.lines, testing::Not(testing::Contains("setting S1: y=2")));
    EXPECT_THAT(callbacks.lines, testing::Contains("setting S2: z=3"));
    EXPECT_THAT(modulesSink.log.Lines(), ElementsAre(std::string(iterationLine) + "14"));
}

TEST_F(PolicyFaultWithoutSink, NamesTheProductThatWasAskedFor) {
    NotingCallbacks callbacks;
    Enforce([&](IPolicyBag& bag) {
        ny_sim_fail_call("ny_policy_get", 1, -2147483647 - 1, NY_SIM_ONCE);
        EXPECT_FALSE(bag.EnumeratePolicies(L"\u00DC %s", &callbacks));
    });
    EXPECT_THAT(modulesSink.log.Lines(),
                ElementsAre("5: Failed to iterate the policy bag for product id \xC3\x9C %s, exception -2147483648"));
}

}  // namespace
