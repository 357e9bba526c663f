// Texts that are composed and go to no log.
#include "values/UnloggedText.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <new>
#include <stdexcept>
#include <vector>

#include "values/AgentException.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::wstring> heard;
std::vector<std::wstring> heardBySecond;

class UnloggedText : public testing::Test {
protected:
    void SetUp() override {
        heard.clear();
        heardBySecond.clear();
        before = SetUnloggedTextListener([](const std::wstring& text) { heard.push_back(text); });
    }
    void TearDown() override { SetUnloggedTextListener(before); }

    // The code that the boundary answers for a body that throws `thrown`.
    template <class Thrown>
    static bool RunThrowing(const Thrown& thrown) {
        return RunOrComposeUnlogged(
            [&] { throw thrown; },
            [](VsKit::CUniStream& text, const char* what) { text << L"failed [" << what << L"]"; });
    }

    UnloggedTextListener before = nullptr;
};

TEST_F(UnloggedText, ReachesTheListener) {
    ComposeUnlogged([](VsKit::CUniStream& text) { text << L"one " << 1; });
    ComposeUnlogged([](VsKit::CUniStream& text) { text << L"two"; });
    EXPECT_THAT(heard, ElementsAre(L"one 1", L"two"));
}

TEST_F(UnloggedText, ReachesOneListenerAtATimeAndTellsWhichWasBefore) {
    const UnloggedTextListener first = GetUnloggedTextListener();
    EXPECT_EQ(SetUnloggedTextListener([](const std::wstring& text) { heardBySecond.push_back(text); }), first);
    ComposeUnlogged([](VsKit::CUniStream& text) { text << L"to the second"; });
    EXPECT_THAT(heard, IsEmpty());
    EXPECT_THAT(heardBySecond, ElementsAre(L"to the second"));
    SetUnloggedTextListener(first);
    EXPECT_EQ(GetUnloggedTextListener(), first);
}

TEST_F(UnloggedText, IsNotEvenComposedWithoutAListener) {
    SetUnloggedTextListener(nullptr);
    bool isComposed = false;
    ComposeUnlogged([&](VsKit::CUniStream&) { isComposed = true; });
    EXPECT_FALSE(isComposed);
    EXPECT_FALSE(RunThrowing(1));
}

TEST_F(UnloggedText, IsComposedForWhatABodyThrowsAndForNothingElse) {
    EXPECT_TRUE(RunOrComposeUnlogged([] {}, [](VsKit::CUniStream& text, const char*) { text << L"never"; }));
    EXPECT_THAT(heard, IsEmpty());
    EXPECT_FALSE(RunThrowing(corvane::ny::utils::exception(705)));
    EXPECT_FALSE(RunThrowing(std::runtime_error("its own text")));
    EXPECT_FALSE(RunThrowing(std::bad_alloc()));
    EXPECT_FALSE(RunThrowing(42));
    const std::string badAlloc = std::bad_alloc().what();
    EXPECT_THAT(heard, ElementsAre(L"failed [Unknown exception]", L"failed [its own text]",
                                   L"failed [" + std::wstring(badAlloc.begin(), badAlloc.end()) + L"]",
                                   L"failed [Unknown exception]"));
}

}  // namespace
