// Texts that are read where the agent keeps them.
#include "values/BorrowedText.h"

#include <optional>

#include "dispatcher/groups/VariantGroup.h"
#include "support/FailingMemory.h"
#include "support/KeptHandles.h"
#include "values/ValuesTest.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr std::string_view narrowText("narrow");
constexpr std::wstring_view wideText(L"wide");

class BorrowedTexts : public ValuesTest {
protected:
    void SetUp() override {
        ValuesTest::SetUp();
        environment.InstallAgent();
    }

    static void CloseVariants() { DispatcherUnload(agentSoftwareId, "ny_variant.dll"); }
};

TEST_F(BorrowedTexts, AreHeldAsLongAsTheyAreRead) {
    const TextFunctions functions = LookUpTextFunctions();
    EXPECT_THAT(CallsOf([&] {
                    const BorrowedWide text(functions, narrowText);
                    EXPECT_EQ(text.View(), L"narrow");
                    EXPECT_EQ(text.Get()[text.View().size()], L'\0');
                    EXPECT_THAT(AgentCalls(),
                                ElementsAre("ny_variant_create_from_string", "ny_variant_get_wstring_buffer",
                                            "ny_wbuffer_get_string", "ny_wbuffer_get_string", "ny_variant_release"));
                    ny_sim_clear_calls();
                }),
                ElementsAre("ny_wbuffer_release"));
    EXPECT_THAT(CallsOf([&] {
                    const BorrowedNarrow text(functions, wideText);
                    EXPECT_EQ(text.View(), "wide");
                    EXPECT_EQ(text.Get()[text.View().size()], '\0');
                    ny_sim_clear_calls();
                }),
                ElementsAre("ny_buffer_release"));
}

TEST_F(BorrowedTexts, OfNothingAreNullAndCallNothing) {
    const TextFunctions functions = LookUpTextFunctions();
    EXPECT_THAT(CallsOf([&] {
                    const BorrowedWide text(functions);
                    EXPECT_EQ(text.Get(), nullptr);
                    EXPECT_TRUE(text.View().empty());
                }),
                IsEmpty());
}

TEST_F(BorrowedTexts, AreGivenBackToTheLibraryThatMadeThemWhenItWasClosedMeanwhile) {
    const auto inUse = LibrariesInUse::Share();
    const TextFunctions functions = LookUpTextFunctions();
    EXPECT_THAT(CallsOf([&] {
                    const BorrowedWide wide(functions, narrowText);
                    const BorrowedNarrow narrow(functions, wideText);
                    const TextVariant variant(functions, wideText);
                    environment.RemoveAgent();
                    CloseVariants();
                    ny_sim_clear_calls();
                }),
                ElementsAre("ny_variant_release", "ny_buffer_release", "ny_wbuffer_release"));
}

TEST_F(BorrowedTexts, AreNotReadThroughFunctionsThatWereLookedUpBeforeALibraryWasClosed) {
    const auto inUse = LibrariesInUse::Share();
    const VariantOwner variant = FromJson("\"text\"");
    const TextFunctions functions = LookUpTextFunctions();
    EXPECT_TRUE(functions.AreCurrent());
    EXPECT_TRUE(LookUpTextFunctions(inUse.get()).AreCurrent());
    CloseVariants();
    EXPECT_FALSE(LookUpTextFunctions(inUse.get()).AreCurrent());
    agent::ny_variant_release(nullptr);
    EXPECT_FALSE(functions.AreCurrent());
    ny_sim_clear_calls();
    EXPECT_EQ(CodeOf([&] { BorrowedWide(functions, narrowText); }), NY_FUNCTION_MISSING);
    EXPECT_EQ(CodeOf([&] { BorrowedWide(functions, variant.Get()); }), NY_FUNCTION_MISSING);
    EXPECT_EQ(CodeOf([&] { TextVariant(functions, wideText); }), NY_FUNCTION_MISSING);
    EXPECT_THAT(AgentCalls(), IsEmpty());
    EXPECT_EQ(BorrowedWide(LookUpTextFunctions(), narrowText).View(), L"narrow");
}

TEST_F(BorrowedTexts, AreNotReadThroughFunctionsThatWereLookedUpWithoutAnAgent) {
    environment.RemoveAgent();
    const TextFunctions functions = LookUpTextFunctions();
    EXPECT_FALSE(functions.AreCurrent());
    environment.InstallAgent();
    EXPECT_EQ(CodeOf([&] { BorrowedWide(functions, narrowText); }), NY_FUNCTION_MISSING);
    EXPECT_EQ(BorrowedWide(LookUpTextFunctions(), narrowText).View(), L"narrow");
}

// A library that lacks its functions is open all the same.
TEST_F(BorrowedTexts, OfALibraryThatDoesNotExportItsFunctionsRaiseFunctionMissing) {
    environment.InstallAgent("5.7.0", "empty");
    const TextFunctions functions = LookUpTextFunctions();
    EXPECT_TRUE(functions.AreCurrent());
    EXPECT_EQ(CodeOf([&] { BorrowedWide(functions, narrowText); }), NY_FUNCTION_MISSING);
    EXPECT_EQ(CodeOf([&] { BorrowedNarrow(functions, static_cast<ny_variant_t*>(nullptr)); }), NY_FUNCTION_MISSING);
}

TEST_F(BorrowedTexts, AreNotReadThroughFunctionsForWhoseTablesThereWasNoMemory) {
    bool areCurrent = false;
    for (size_t failing = 0; !areCurrent; ++failing) {
        ASSERT_LT(failing, 100U);
        CloseVariants();
        TextFunctions functions{};
        {
            const FailingMemory memory(failing, 1);
            functions = LookUpTextFunctions();
        }
        areCurrent = functions.AreCurrent();
        EXPECT_EQ(CodeOf([&] { BorrowedWide(functions, narrowText); }), areCurrent ? -1 : NY_FUNCTION_MISSING);
        EXPECT_GE(failing, areCurrent ? 2U : 0U) << "there are two tables";
    }
}

}  // namespace
