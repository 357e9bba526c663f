// The agent gets the properties that a module sets.
#include <set>
#include <thread>

#include "property/PropertyTest.h"
#include "support/OnPurpose.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class SetProperty : public PropertyTest {
protected:
    // The answer to a request whose collector does this.
    std::vector<std::string> AskFor(std::function<void(ISet&)> collect) {
        collector.collect = std::move(collect);
        const Registration registration(productId, collector, &modulesSink);
        return Ask(productId);
    }
};

TEST_F(SetProperty, KeepsTheOrderAndEveryRepetition) {
    EXPECT_THAT(AskFor([](ISet& set) {
                    EXPECT_TRUE(set.SetProperty(L"b", L"2", L"x"));
                    EXPECT_TRUE(set.SetProperty(L"a", L"1", L"y"));
                    EXPECT_TRUE(set.SetProperty(L"b", L"2", L"x"));
                    EXPECT_TRUE(set.SetProperty(L"b", L"2", L"z"));
                }),
                ElementsAre("answer 0", "b:2=x", "a:1=y", "b:2=x", "b:2=z"));
}

TEST_F(SetProperty, StartsEachRequestWithAnEmptyBag) {
    const Registration registration(productId, collector);
    EXPECT_EQ(Ask(productId), answered);
    EXPECT_EQ(Ask(productId), answered);
}

TEST_F(SetProperty, TakesTextsOfEveryAlphabet) {
    EXPECT_THAT(
        AskFor([](ISet& set) {
            EXPECT_TRUE(set.SetProperty(L"P\u00E4th\\\u4EA7", L"n\u00E9e %s", L"\U0001F600 \uFFFF\u0080\u07FF"));
        }),
        ElementsAre("answer 0",
                    "P\xC3\xA4th\\\xE4\xBA\xA7:n\xC3\xA9\x65 %s=\xF0\x9F\x98\x80 "
                    "\xEF\xBF\xBF\xC2\x80\xDF\xBF"));
}

// Half a surrogate pair is no character; the agent puts U+FFFD in its place and nothing else is lost.
TEST_F(SetProperty, GivesBrokenSurrogatesToTheAgentAsTheyAre) {
    constexpr wchar_t high[] = {L'a', 0xD83D, L'b', 0};
    constexpr wchar_t low[] = {0xDE00, L'c', 0};
    constexpr wchar_t last[] = {L'd', 0xD83D, 0};
    EXPECT_THAT(AskFor([&](ISet& set) { EXPECT_TRUE(set.SetProperty(high, low, last)); }),
                ElementsAre("answer 0", "a\xEF\xBF\xBD\x62:\xEF\xBF\xBD\x63=d\xEF\xBF\xBD"));
}

TEST_F(SetProperty, TakesEmptyTexts) {
    EXPECT_THAT(AskFor([](ISet& set) {
                    EXPECT_TRUE(set.SetProperty(L"", L"", L""));
                    EXPECT_TRUE(set.SetProperty(L"path", L"name", L""));
                    EXPECT_TRUE(set.SetProperty(L"", L"name", L"value"));
                }),
                ElementsAre("answer 0", ":=", "path:name=", ":name=value"));
}

TEST_F(SetProperty, TakesAValueOfAMillionCharacters) {
    const std::wstring value(1024 * 1024, L'\u00FC');
    const std::vector<std::string> lines =
        AskFor([&](ISet& set) { EXPECT_TRUE(set.SetProperty(L"path", L"name", value.c_str())); });
    ASSERT_EQ(lines.size(), 2U);
    // Compared as a whole without being printed.
    EXPECT_TRUE(lines[1] == "path:name=" + Narrow(value));
}

TEST_F(SetProperty, TakesAThousandProperties) {
    std::vector<std::string> expected = {"answer 0"};
    for (int i = 0; i < 1000; ++i) {
        expected.push_back("path:" + std::to_string(i) + "=" + std::to_string(i * i));
    }
    EXPECT_EQ(AskFor([](ISet& set) {
                  for (int i = 0; i < 1000; ++i) {
                      EXPECT_TRUE(set.SetProperty(L"path", std::to_wstring(i).c_str(), std::to_wstring(i * i).c_str()));
                  }
              }),
              expected);
}

TEST_F(SetProperty, CopiesTheTexts) {
    EXPECT_THAT(AskFor([](ISet& set) {
                    wchar_t text[] = L"text";
                    EXPECT_TRUE(set.SetProperty(text, text, text));
                    text[0] = L'n';
                }),
                ElementsAre("answer 0", "text:text=text"));
}

// In the traces too, which are composed from the second request on.
TEST_F(SetProperty, TakesANullPathOrNameAsAnEmptyOne) {
    collector.getLogLevel = [] { return 4; };
    collector.collect = [](ISet& set) {
        EXPECT_TRUE(set.SetProperty(nullptr, L"name", L"value"));
        EXPECT_TRUE(set.SetProperty(L"path", nullptr, L"value"));
        EXPECT_TRUE(set.SetProperty(nullptr, nullptr, L""));
    };
    const Registration registration(productId, collector, &modulesSink);
    for (int i = 0; i < 2; ++i) {
        EXPECT_THAT(Ask(productId), ElementsAre("answer 0", ":name=value", "path:=value", ":="));
    }
    EXPECT_THAT(modulesSink.log.Lines(), IsEmpty());
}

TEST_F(SetProperty, RefusesANullValueAndLogsNothing) {
    const OnPurpose mistakes{"PROPERTY-NULL"};
    collector.getLogLevel = [] { return 9; };
    for (int i = 0; i < 2; ++i) {
        ny_sim_clear_calls();
        EXPECT_EQ(AskFor([](ISet& set) {
                      EXPECT_FALSE(set.SetProperty(L"path", L"name", nullptr));
                      EXPECT_FALSE(set.SetProperty(L"path", nullptr, nullptr));
                      EXPECT_FALSE(set.SetProperty(nullptr, L"name", nullptr));
                      EXPECT_FALSE(set.SetProperty(nullptr, nullptr, nullptr));
                  }),
                  nothing);
        EXPECT_EQ(ny_sim_call_count("ny_variant_create_from_wstring"), 0U);
    }
    EXPECT_THAT(modulesSink.log.Lines(), IsEmpty());
    EXPECT_THAT(sink.log.Lines(), IsEmpty());
}

TEST_F(SetProperty, RefusesANullValueAlsoWhenTheModuleWantsTraces) {
    const OnPurpose mistakes{"PROPERTY-NULL"};
    collector.collect = [](ISet& set) { EXPECT_FALSE(set.SetProperty(L"path", L"name", nullptr)); };
    collector.getLogLevel = [] { return 4; };
    const Registration registration(productId, collector, &modulesSink);
    EXPECT_EQ(Ask(productId), nothing);
    EXPECT_EQ(Ask(productId), nothing);
    EXPECT_THAT(modulesSink.log.Lines(), IsEmpty());
}

TEST_F(SetProperty, OutsideOfACollectionIsRefused) {
    const OnPurpose mistakes{"LENT-KEPT"};
    ISet* kept = nullptr;
    collector.collect = [&](ISet& set) { kept = &set; };
    bool wasTakenByLevel = false;
    collector.getLogLevel = [&] {
        wasTakenByLevel = kept->SetProperty(L"path", L"name", L"of the level");
        return 9;
    };
    const Registration registration(productId, collector, &modulesSink);
    const std::vector<std::string> lines = Ask(productId);
    ASSERT_NE(kept, nullptr);
    ny_sim_clear_calls();
    EXPECT_FALSE(kept->SetProperty(L"path", L"name", L"value"));
    EXPECT_FALSE(kept->SetProperty(L"path", L"name", nullptr));
    EXPECT_EQ(ny_sim_call_count(nullptr), 0U);
    EXPECT_THAT(modulesSink.log.Lines(), IsEmpty());
    // The bag is there until the module was asked for its level.
    EXPECT_TRUE(wasTakenByLevel);
    EXPECT_THAT(lines, ElementsAre("answer 0", "path:name=of the level"));
}

TEST_F(SetProperty, IsOneSetterForAllRequestsOfARegistration) {
    std::vector<ISet*> setters;
    collector.collect = [&](ISet& set) { setters.push_back(&set); };
    const Registration registration(productId, collector);
    EXPECT_EQ(Ask(productId), nothing);
    EXPECT_EQ(Ask(productId), nothing);
    ASSERT_EQ(setters.size(), 2U);
    EXPECT_EQ(setters[0], setters[1]);
}

TEST_F(SetProperty, WorksOnAThreadThatTheCollectorWaitsFor) {
    EXPECT_EQ(AskFor([](ISet& set) {
                  std::thread([&] { EXPECT_TRUE(set.SetProperty(L"general", L"version", L"1.0")); }).join();
              }),
              answered);
}

TEST_F(SetProperty, WorksOnManyThreadsAtOnce) {
    const std::vector<std::string> lines = AskFor([](ISet& set) {
        std::vector<std::thread> threads;
        for (int i = 0; i < 8; ++i) {
            threads.emplace_back([&set, i] {
                for (int n = 0; n < 20; ++n) {
                    EXPECT_TRUE(set.SetProperty(std::to_wstring(i).c_str(), std::to_wstring(n).c_str(), L"v"));
                }
            });
        }
        for (std::thread& thread : threads) {
            thread.join();
        }
    });
    EXPECT_EQ(lines.size(), 1 + 8 * 20U);
    EXPECT_EQ(std::set<std::string>(lines.begin(), lines.end()).size(), lines.size());
}

}  // namespace
