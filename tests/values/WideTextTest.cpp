// Texts of the agent's in memory that is used again.
#include "values/WideText.h"

#include "support/FailingMemory.h"
#include "values/AgentTexts.h"
#include "values/ValuesTest.h"

namespace {

using testing::ElementsAre;

class WideTextTest : public ValuesTest {
protected:
    void SetUp() override {
        ValuesTest::SetUp();
        environment.InstallAgent();
    }
};

TEST_F(WideTextTest, AreWidenedByTheAgentWhatTheirLengthIs) {
    WideText text;
    EXPECT_EQ(text.Get(), nullptr);
    const TextFunctions functions = LookUpTextFunctions();
    // On both sides of what fits without the heap, long ones after short ones and back.
    for (const size_t length : {0U, 1U, 62U, 63U, 64U, 65U, 1000U, 63U, 0U}) {
        const std::string narrow(length, 'x');
        text.Assign(functions, narrow);
        EXPECT_EQ(text.View(), std::wstring(length, L'x'));
        ASSERT_NE(text.Get(), nullptr);
        EXPECT_EQ(text.Get()[length], L'\0');
    }
    text.Clear();
    EXPECT_EQ(text.Get(), nullptr);
    EXPECT_TRUE(text.View().empty());
}

TEST_F(WideTextTest, KeepZerosAndEveryScript) {
    const std::string narrow("\xC3\xBC\0\xF0\x9F\x98\x80", 7);
    EXPECT_EQ(WideText(narrow).View(), WideFromNarrow(narrow));
}

TEST_F(WideTextTest, GiveTheAgentEverythingBackAtOnce) {
    EXPECT_THAT(CallsOf([] {
                    const WideText text("text");
                    EXPECT_THAT(AgentCalls(), testing::SizeIs(6));
                    ny_sim_clear_calls();
                }),
                testing::IsEmpty());
    EXPECT_THAT(CallsOf([] { WideText("text"); }),
                ElementsAre("ny_variant_create_from_string", "ny_variant_get_wstring_buffer", "ny_wbuffer_get_string",
                            "ny_wbuffer_get_string", "ny_wbuffer_release", "ny_variant_release"));
}

TEST_F(WideTextTest, ThatAreRefusedLeaveNoText) {
    WideText text("before");
    ASSERT_EQ(ny_sim_fail_call("ny_wbuffer_get_string", 2, 66, NY_SIM_ONCE), NY_OK);
    EXPECT_EQ(CodeOf([&] { text.Assign(LookUpTextFunctions(), "after"); }), 66);
    EXPECT_EQ(text.Get(), nullptr);
}

TEST_F(WideTextTest, ThatAreShortNeedNoMemory) {
    const TextFunctions functions = LookUpTextFunctions();
    WideText text;
    const std::string narrow(63, 'x');
    const size_t before = AllocationsOfThread();
    text.Assign(functions, narrow);
    EXPECT_EQ(AllocationsOfThread(), before);
}

TEST_F(WideTextTest, ThatAreLongRaiseWhenMemoryRunsOut) {
    const TextFunctions functions = LookUpTextFunctions();
    WideText text;
    const std::string narrow(100, 'x');
    {
        const FailingMemory memory(0, 1);
        EXPECT_THROW(text.Assign(functions, narrow), std::bad_alloc);
    }
    EXPECT_EQ(text.Get(), nullptr);
}

}  // namespace
