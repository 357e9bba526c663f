// Texts that are read where the agent keeps them.
#include "values/BorrowedText.h"

#include <algorithm>
#include <cstdint>
#include <new>
#include <optional>
#include <string>
#include <vector>

#include "dispatcher/groups/VariantGroup.h"
#include "support/AgentFunctionsReplaced.h"
#include "support/FailingMemory.h"
#include "support/KeptHandles.h"
#include "values/ValuesTest.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr std::string_view narrowText("narrow");
constexpr std::wstring_view wideText(L"wide");

class BorrowedTextTest : public ValuesTest {
protected:
    void SetUp() override {
        ValuesTest::SetUp();
        environment.InstallAgent();
    }

    static void CloseVariants() { DispatcherUnload(agentSoftwareId, "ny_variant.dll"); }
};

TEST_F(BorrowedTextTest, AreHeldAsLongAsTheyAreRead) {
    const TextFunctions functions = LookUpTextFunctions();
    EXPECT_THAT(CallsOf([&] {
                    BorrowedWide text(functions, narrowText);
                    EXPECT_EQ(text.View(), L"narrow");
                    EXPECT_EQ(text.Get()[text.View().size()], L'\0');
                    EXPECT_THAT(AgentCalls(),
                                ElementsAre("ny_variant_create_from_string", "ny_variant_get_wstring_buffer",
                                            "ny_wbuffer_get_string", "ny_wbuffer_get_string", "ny_variant_release"));
                    ny_sim_clear_calls();
                }),
                ElementsAre("ny_wbuffer_release"));
    EXPECT_THAT(CallsOf([&] {
                    BorrowedNarrow text(functions, wideText);
                    EXPECT_EQ(text.View(), "wide");
                    EXPECT_EQ(text.Get()[text.View().size()], '\0');
                    ny_sim_clear_calls();
                }),
                ElementsAre("ny_buffer_release"));
}

TEST_F(BorrowedTextTest, WithoutASourceAreNullAndCallNoAgentFunction) {
    const TextFunctions functions = LookUpTextFunctions();
    EXPECT_THAT(CallsOf([&] {
                    BorrowedWide text(functions);
                    EXPECT_EQ(text.Get(), nullptr);
                    EXPECT_TRUE(text.View().empty());
                }),
                IsEmpty());
}

TEST_F(BorrowedTextTest, AreGivenBackToTheLibraryThatMadeThemWhenItWasClosedMeanwhile) {
    const auto inUse = LibrariesInUse::Share();
    const TextFunctions functions = LookUpTextFunctions();
    EXPECT_THAT(CallsOf([&] {
                    BorrowedWide wide(functions, narrowText);
                    BorrowedNarrow narrow(functions, wideText);
                    const TextVariant variant(functions, wideText);
                    environment.RemoveAgent();
                    CloseVariants();
                    ny_sim_clear_calls();
                }),
                ElementsAre("ny_variant_release", "ny_buffer_release", "ny_wbuffer_release"));
}

TEST_F(BorrowedTextTest, AreNotReadThroughFunctionsThatWereLookedUpBeforeALibraryWasClosed) {
    const auto inUse = LibrariesInUse::Share();
    const VariantOwner variant = FromJson("\"text\"");
    const TextFunctions functions = LookUpTextFunctions();
    EXPECT_TRUE(functions.AreCurrent());
    EXPECT_TRUE(LookUpTextFunctions(inUse.get()).AreCurrent());
    CloseVariants();
    const TextFunctions late = LookUpTextFunctions(inUse.get());
    EXPECT_FALSE(late.AreCurrent());
    // Not that of the library that was opened since: the thread inside the closed one does not keep it.
    EXPECT_EQ(late.releaseVariant(nullptr), NY_FUNCTION_MISSING);
    EXPECT_EQ(agent::ny_variant_release(nullptr), NY_INVALID_ARGUMENT);
    EXPECT_FALSE(functions.AreCurrent());
    ny_sim_clear_calls();
    EXPECT_EQ(CodeOf([&] { BorrowedWide(functions, narrowText); }), NY_FUNCTION_MISSING);
    EXPECT_EQ(CodeOf([&] { BorrowedWide(functions, variant.Get()); }), NY_FUNCTION_MISSING);
    EXPECT_EQ(CodeOf([&] { TextVariant(functions, wideText); }), NY_FUNCTION_MISSING);
    EXPECT_THAT(AgentCalls(), IsEmpty());
    EXPECT_EQ(BorrowedWide(LookUpTextFunctions(), narrowText).View(), L"narrow");
}

TEST_F(BorrowedTextTest, AreNotReadThroughFunctionsThatWereLookedUpWithoutAnAgent) {
    environment.RemoveAgent();
    const TextFunctions functions = LookUpTextFunctions();
    EXPECT_FALSE(functions.AreCurrent());
    environment.InstallAgent();
    EXPECT_EQ(CodeOf([&] { BorrowedWide(functions, narrowText); }), NY_FUNCTION_MISSING);
    EXPECT_EQ(BorrowedWide(LookUpTextFunctions(), narrowText).View(), L"narrow");
}

// A library that lacks its functions is open all the same.
TEST_F(BorrowedTextTest, OfALibraryThatDoesNotExportItsFunctionsRaiseFunctionMissing) {
    environment.InstallAgent("5.7.0", "empty");
    const TextFunctions functions = LookUpTextFunctions();
    EXPECT_TRUE(functions.AreCurrent());
    EXPECT_EQ(CodeOf([&] { BorrowedWide(functions, narrowText); }), NY_FUNCTION_MISSING);
    EXPECT_EQ(CodeOf([&] { BorrowedNarrow(functions, static_cast<ny_variant_t*>(nullptr)); }), NY_FUNCTION_MISSING);
}

TEST_F(BorrowedTextTest, AreNotReadThroughFunctionsForWhoseTablesThereWasNoMemory) {
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

// An agent with one text, which stands in exactly its memory, and any length for it.
class BorrowedTextsOfAnyLength : public BorrowedTextTest {
protected:
    BorrowedTextsOfAnyLength() {
        length = 0;
        agent.Replace("ny_wbuffer_get_string", &Give);
    }

    static void GiveText(const std::wstring& given) {
        text.assign(given.begin(), given.end());
        text.push_back(L'\0');
        text.shrink_to_fit();
    }

    static inline std::vector<wchar_t> text;
    static inline size_t length = 0;

private:
    static int32_t Give(ny_wbuffer_t* /*buffer*/, const wchar_t** out, size_t* outLength) {
        *out = text.data();
        *outLength = length;
        return NY_OK;
    }

    AgentFunctionsReplaced agent;
};

TEST_F(BorrowedTextsOfAnyLength, AreCutToACopyWhereTheLengthIsLess) {
    const TextFunctions functions = LookUpTextFunctions();
    for (const size_t size : {1U, 20U, 5000U, 100000U}) {
        const std::wstring whole(size, L'x');
        GiveText(whole);
        for (const size_t less : {size - 1, size / 2, size_t{0}}) {
            length = less;
            BorrowedWide cut(functions, narrowText);
            EXPECT_TRUE(cut.Get() == whole.substr(0, less)) << less << " of " << size;
            EXPECT_EQ(cut.View().size(), less);
            EXPECT_EQ(cut.View().data(), cut.Get());
        }
    }
}

TEST_F(BorrowedTextsOfAnyLength, AreReadInPlaceWhereTheLengthIsTheTexts) {
    const TextFunctions functions = LookUpTextFunctions();
    for (const size_t size : {0U, 20U, 5000U, 100000U}) {
        GiveText(std::wstring(size, L'x'));
        length = size;
        const size_t before = AllocationsOfThread();
        EXPECT_EQ(BorrowedWide(functions, narrowText).Get(), text.data());
        EXPECT_EQ(AllocationsOfThread(), before);
    }
}

TEST_F(BorrowedTextsOfAnyLength, KeepTheZerosInThem) {
    const TextFunctions functions = LookUpTextFunctions();
    const std::wstring whole(L"a\0b\0c", 5);
    GiveText(whole);
    for (const size_t size : {5U, 4U, 3U, 2U}) {
        length = size;
        EXPECT_EQ(BorrowedWide(functions, narrowText).View(), std::wstring_view(whole).substr(0, size));
    }
}

// Such a length says nothing of where the memory ends.
TEST_F(BorrowedTextsOfAnyLength, AreReadNoFurtherThanTheirTerminatorWhereTheLengthIsFarTooGreat) {
    const TextFunctions functions = LookUpTextFunctions();
    GiveText(L"text");
    for (const size_t tooGreat : {size_t{10000}, size_t{1} << 40, SIZE_MAX / 16}) {
        length = tooGreat;
        EXPECT_STREQ(BorrowedWide(functions, narrowText).Get(), L"text");
    }
}

TEST_F(BorrowedTextsOfAnyLength, RaiseWhereNoMemoryHoldsTheLength) {
    const TextFunctions functions = LookUpTextFunctions();
    GiveText(L"text");
    for (const size_t impossible : {SIZE_MAX, SIZE_MAX / 2}) {
        length = impossible;
        EXPECT_THROW(BorrowedWide(functions, narrowText).Get(), std::bad_alloc);
        EXPECT_THROW(BorrowedWide(functions, narrowText).View(), std::bad_alloc);
    }
}

TEST_F(BorrowedTextsOfAnyLength, RaiseWhenThereIsNoMemoryForTheCopy) {
    const TextFunctions functions = LookUpTextFunctions();
    GiveText(std::wstring(100, L'x'));
    length = 99;
    bool isRaised = false;
    {
        const FailingMemory memory(0, 1);
        try {
            BorrowedWide(functions, narrowText).Get();
        } catch (const std::bad_alloc&) {
            isRaised = true;
        }
    }
    EXPECT_TRUE(isRaised);
}

}  // namespace
