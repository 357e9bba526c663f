// Updates through the C++ layer.
#include <map>
#include <stdexcept>

#include "cpp/LayerTest.h"
#include "support/AgentUpdate.h"

using testing::ElementsAre;

namespace {

class LayerUpdates : public LayerTest {};

TEST_F(LayerUpdates, AreToldAndTheirValuesAreGivenAndSetByName) {
    std::map<std::wstring, std::wstring, std::less<>> values{{L"a key", L"before"}};
    const vsmsgbus::Product product(
        id, {.updates = {.notify =
                             [](vsmsgbus::UpdateNotice& notice) {
                                 EXPECT_EQ(notice.second, L"text 2");
                                 EXPECT_EQ(notice.third, L"text 3");
                                 EXPECT_EQ(notice.fourth, L"text 4");
                                 EXPECT_EQ(notice.number, 7U);
                                 return 5;
                             },
                         .get = [&](std::wstring_view name) -> std::optional<std::wstring> {
                             const auto found = values.find(name);
                             return found != values.end() ? std::optional(found->second) : std::nullopt;
                         },
                         .set =
                             [&](std::wstring_view name, std::wstring_view value) {
                                 values.insert_or_assign(std::wstring(name), std::wstring(value));
                                 return true;
                             }}});
    EXPECT_EQ(Update(NotifyCall()), "answer 0, result 5");
    EXPECT_EQ(Update(GetCall()), "answer 0, result 0, value <before>");
    EXPECT_EQ(Update(SetCall()), "answer 0, result 0");
    EXPECT_EQ(Update(GetCall()), "answer 0, result 0, value <a value>");
}

TEST_F(LayerUpdates, ThatNoHandlerIsForAreAnsweredAsWithoutACallback) {
    const vsmsgbus::Product product(
        id, {.updates = {.get = [](std::wstring_view /*name*/) { return std::optional<std::wstring>(); }}});
    EXPECT_EQ(Update(NotifyCall()), "answer 0, result 2");
    EXPECT_EQ(Update(GetCall()), "answer 0, result 1, value <>");
    EXPECT_EQ(Update(SetCall()), "answer 0, result 1");
}

TEST_F(LayerUpdates, WhoseHandlerThrowsAreAnsweredAsWithoutACallbackAndTheLogHandlerHearsOfIt) {
    const auto thrown = [] { throw std::runtime_error("no"); };
    const vsmsgbus::Product product(id, Logged({.updates = {.notify =
                                                                [&](vsmsgbus::UpdateNotice& /*notice*/) {
                                                                    thrown();
                                                                    return 0;
                                                                },
                                                            .set =
                                                                [&](std::wstring_view, std::wstring_view) {
                                                                    thrown();
                                                                    return true;
                                                                }}}));
    EXPECT_EQ(Update(NotifyCall()), "answer 0, result 2");
    EXPECT_EQ(Update(SetCall()), "answer 0, result 1");
    EXPECT_THAT(lines.Lines(),
                ElementsAre("3: the handler of updates threw: no", "3: the handler of updates threw: no"));
}

}  // namespace
