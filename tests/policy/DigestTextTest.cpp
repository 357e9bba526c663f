// The digests in a buffer: what GetDigest gives, for modules of whatever C++ library.
#include "policy/PolicyTest.h"
#include "support/HostLog.h"
#include "support/OnPurpose.h"

namespace {

using VsKitMsgbus::lpc_buffer;

class DigestText : public PolicyTest {
protected:
    struct Digests {
        bool isWhole;
        std::string text;
        uint32_t kind;
    };

    // The result of one question, before which `fail` puts a fault in place.
    template <class Fail>
    Digests Ask(const char* id, const Fail& fail) {
        Digests digests{};
        lpc_buffer buffer;
        EXPECT_EQ(Enforce([&](IPolicyBag& bag) {
                      fail();
                      digests.isWhole = bag.GetDigestText(id, &buffer);
                  }),
                  NY_OK);
        digests.kind = buffer.kind;
        digests.text = VsKitMsgbus::TakeNarrowText(buffer);
        EXPECT_EQ(buffer.data, nullptr);
        EXPECT_THAT(modulesSink.log.Lines(), testing::IsEmpty());
        EXPECT_THAT(sink.log.Lines(), testing::IsEmpty());
        return digests;
    }
    Digests Ask(const char* id) {
        return Ask(id, [] {});
    }

    static void HoldTwo() {
        HoldPolicies(R"([{"softwareId": "PRODUCT1000", "settingsObject": {"digest": "first"}},
                         {"softwareId": "PRODUCT1000", "settingsObject": {"digest": "second"}}])");
    }
    static void FailSecond() { ASSERT_EQ(ny_sim_fail_call("ny_policy_uri_get_pso_digest", 2, 77, NY_SIM_ONCE), NY_OK); }
};

TEST_F(DigestText, IsThatOfTheString) {
    HoldTwo();
    const Digests digests = Ask("PRODUCT1000");
    EXPECT_TRUE(digests.isWhole);
    EXPECT_EQ(digests.text, "firstsecond");
    EXPECT_EQ(digests.kind, lpc_buffer::NarrowText);
    Enforce([](IPolicyBag& bag) { EXPECT_EQ(bag.GetDigest("PRODUCT1000"), "firstsecond"); });
}

TEST_F(DigestText, OfNoPoliciesIsAnEmptyOne) {
    const Digests digests = Ask("PRODUCT1000");
    EXPECT_TRUE(digests.isWhole);
    EXPECT_EQ(digests.text, "");
    EXPECT_EQ(digests.kind, lpc_buffer::NarrowText);
}

TEST_F(DigestText, OfNullIsAnEmptyOneWithoutAskingTheAgent) {
    const Digests digests = Ask(nullptr, [] { ny_sim_clear_calls(); });
    EXPECT_FALSE(digests.isWhole);
    EXPECT_EQ(digests.text, "");
    EXPECT_EQ(digests.kind, lpc_buffer::NarrowText);
    EXPECT_EQ(ny_sim_call_count("ny_policy_get"), 0U);
}

TEST_F(DigestText, IntoNoBufferIsFalse) {
    Enforce([](IPolicyBag& bag) { EXPECT_FALSE(bag.GetDigestText("PRODUCT1000", nullptr)); });
}

TEST_F(DigestText, AfterAnErrorHasThoseBeforeItAndLogsWhatTheStringLogs) {
    HoldTwo();
    const HostLog log;
    const Digests digests = Ask("PRODUCT1000", FailSecond);
    EXPECT_FALSE(digests.isWhole);
    EXPECT_EQ(digests.text, "first");
    const std::vector<std::string> ofText = log.log.Lines();
    EXPECT_THAT(ofText, testing::ElementsAre("8 NySpb: Error 77 getting digest"));
    Enforce([](IPolicyBag& bag) {
        FailSecond();
        EXPECT_EQ(bag.GetDigest("PRODUCT1000"), "first");
    });
    EXPECT_THAT(log.log.Lines(), testing::ElementsAre(ofText[0], ofText[0]));
}

TEST_F(DigestText, FreesWhatTheBufferHeld) {
    HoldTwo();
    Enforce([](IPolicyBag& bag) {
        lpc_buffer buffer;
        bag.Dump(&buffer);
        ASSERT_EQ(buffer.kind, lpc_buffer::WideText);
        EXPECT_TRUE(bag.GetDigestText("PRODUCT1000", &buffer));
        EXPECT_EQ(buffer.kind, lpc_buffer::NarrowText);
        EXPECT_EQ(buffer.length, 11U);
        EXPECT_STREQ(static_cast<const char*>(buffer.data), "firstsecond");
        EXPECT_FALSE(bag.GetDigestText(nullptr, &buffer));
        EXPECT_EQ(buffer.length, 0U);
        buffer.Release();
    });
}

TEST_F(DigestText, TakenAsWideTextIsNone) {
    HoldTwo();
    Enforce([](IPolicyBag& bag) {
        lpc_buffer buffer;
        ASSERT_TRUE(bag.GetDigestText("PRODUCT1000", &buffer));
        EXPECT_EQ(VsKitMsgbus::TakeWideText(buffer), L"");
        EXPECT_EQ(buffer.kind, lpc_buffer::Empty);
        EXPECT_EQ(buffer.data, nullptr);
    });
}

// In a string of the module's own C++ library, which the header makes.
class DigestString : public DigestText {
protected:
    std::string Digest(const char* id) {
        std::string digest = "before";
        EXPECT_EQ(Enforce([&](IPolicyBag& bag) { digest = bag.Digest(id); }), NY_OK);
        return digest;
    }
};

TEST_F(DigestString, IsThatOfTheBuffer) {
    HoldTwo();
    EXPECT_EQ(Digest("PRODUCT1000"), "firstsecond");
    const std::string longDigest(1000, 'd');
    HoldPolicies(R"([{"softwareId": "PRODUCT1000", "settingsObject": {"digest": ")" + longDigest + R"("}}])");
    EXPECT_EQ(Digest("PRODUCT1000"), longDigest);
}

TEST_F(DigestString, OfNoPoliciesOfNoProductAndOfNullIsEmpty) {
    const OnPurpose mistakes{"WALK-OF-OTHER-ID"};
    EXPECT_EQ(Digest("PRODUCT1000"), "");
    HoldTwo();
    EXPECT_EQ(Digest("product1000"), "");
    EXPECT_EQ(Digest(""), "");
    EXPECT_EQ(Digest(nullptr), "");
}

TEST_F(DigestString, AfterAnErrorHasThoseBeforeIt) {
    HoldTwo();
    Enforce([](IPolicyBag& bag) {
        FailSecond();
        EXPECT_EQ(bag.Digest("PRODUCT1000"), "first");
    });
}

}  // namespace
