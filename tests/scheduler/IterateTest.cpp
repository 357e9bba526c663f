// How a module is shown the settings of a task, and their number.
#include "../../values/AgentException.h"
#include "scheduler/TaskTest.h"
#include "support/BuildKind.h"
#include "support/OnPurpose.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class IterateTest : public TaskTest {
protected:
    int32_t Iterate(const std::string& settings, const wchar_t* section) {
        int32_t result = -1;
        WithSettings(settings, [&](ITaskBag& bag) {
            result = bag.IterateSettings(&visitor, section);
            EXPECT_EQ(ny_sim_live_handles(NY_SIM_ANY), 1U) << "other than the client";
            return 4;
        });
        return result;
    }

    SettingVisitor visitor;
};

TEST_F(IterateTest, ShowsSectionKeyAndValueInTheAgentsOrder) {
    EXPECT_EQ(Iterate(R"({"Scan": {"z": "1", "a": "two", "": "", "\u00DC": "%s", "n": 3, "o": null},
                          "Other": {"x": "y"}})",
                      L"Scan"),
              1);
    EXPECT_THAT(visitor.log.Lines(),
                ElementsAre("Scan:z=1", "Scan:a=two", "Scan:=", "Scan:\xC3\x9C=%s", "Scan:n=3", "Scan:o=null"));
}

TEST_F(IterateTest, OfAnEmptySectionShowsNothingAndIsComplete) {
    EXPECT_EQ(Iterate(R"({"Scan": {}})", L"Scan"), 1);
    EXPECT_THAT(visitor.log.Lines(), IsEmpty());
}

TEST_F(IterateTest, OfNoSectionAsksNoAgent) {
    WithSettings(R"({"": {"a": "b"}, "Scan": {"a": "b"}})", [this](ITaskBag& bag) {
        ny_sim_clear_calls();
        EXPECT_EQ(bag.IterateSettings(&visitor, nullptr), 0);
        EXPECT_EQ(bag.IterateSettings(&visitor, L""), 0);
        EXPECT_EQ(bag.IterateSettings(nullptr, L"Scan"), 0);
        EXPECT_EQ(ny_sim_call_count(nullptr), 0U);
        return 4;
    });
    EXPECT_THAT(visitor.log.Lines(), IsEmpty());
}

TEST_F(IterateTest, OfWhatIsNoTableIs0) {
    EXPECT_EQ(Iterate(R"({"Scan": {"a": "b"}})", L"scan"), 0);
    EXPECT_EQ(Iterate(R"({"Scan": "a text"})", L"Scan"), 0);
    EXPECT_EQ(Iterate(R"({"Scan": ["a list"]})", L"Scan"), 0);
    EXPECT_THAT(visitor.log.Lines(), IsEmpty());
}

TEST_F(IterateTest, EndsAtAValueThatIsNoText) {
    EXPECT_EQ(Iterate(R"({"Scan": {"a": "b", "list": [1], "c": "d"}})", L"Scan"), 0);
    EXPECT_THAT(visitor.log.Lines(), ElementsAre("Scan:a=b"));
}

TEST_F(IterateTest, OfATaskThatGivesNoSectionIs0) {
    for (const char* behaviour : {"\"absent\"", "\"null\"", "77"}) {
        SetTasks(std::string(R"([{"id": "task", "product": "PRODUCT1000", "settings": {"Scan": {"a": "b"}},
                                  "accessors": {"get_section": )") +
                 behaviour + "}}]");
        WithBag([this](ITaskBag& bag) {
            EXPECT_EQ(bag.IterateSettings(&visitor, L"Scan"), 0);
            return 4;
        });
    }
    EXPECT_THAT(visitor.log.Lines(), IsEmpty());
}

TEST_F(IterateTest, EndsWhenTheVisitorThrows) {
    const OnPurpose mistakes{"CALLBACK-THREW"};
    visitor.onSetting = [] { throw 42; };
    EXPECT_EQ(Iterate(R"({"Scan": {"a": "b", "c": "d"}})", L"Scan"), 0);
    visitor.onSetting = [] { throw corvane::ny::utils::exception(77); };
    EXPECT_EQ(Iterate(R"({"Scan": {"e": "f", "g": "h"}})", L"Scan"), 0);
    EXPECT_THAT(visitor.log.Lines(), ElementsAre("Scan:a=b", "Scan:e=f"));
}

TEST_F(IterateTest, MayBeNestedAndReadTheBagMeanwhile) {
    SettingVisitor inner;
    WithSettings(R"({"Scan": {"a": "1", "b": "2"}, "Report": {"to": "nobody"}})", [&](ITaskBag& bag) {
        visitor.onSetting = [&] {
            int32_t value = 0;
            EXPECT_TRUE(bag.GetInteger(L"Scan", L"b", &value));
            EXPECT_EQ(value, 2);
            EXPECT_EQ(bag.IterateSettings(&inner, L"Report"), 1);
        };
        EXPECT_EQ(bag.IterateSettings(&visitor, L"Scan"), 1);
        return 4;
    });
    EXPECT_THAT(inner.log.Lines(), ElementsAre("Report:to=nobody", "Report:to=nobody"));
}

TEST_F(IterateTest, ShowsTenThousandSettings) {
    constexpr int count = isWindows ? 10000 : 1000;
    std::string settings = R"({"Scan": {"0": "0")";
    for (int i = 1; i < count; ++i) {
        settings += ", \"" + std::to_string(i) + "\": \"" + std::to_string(i) + "\"";
    }
    EXPECT_EQ(Iterate(settings + "}}", L"Scan"), 1);
    ASSERT_EQ(visitor.log.Lines().size(), static_cast<size_t>(count));
    const std::string last = std::to_string(count - 1);
    EXPECT_EQ(visitor.log.Lines().back(), "Scan:" + last + "=" + last);
}

class TaskCount : public TaskTest {
protected:
    size_t Count(const std::string& members) {
        SetTasks(R"([{"id": "task", "product": "PRODUCT1000")" + members + "}]");
        size_t count = SIZE_MAX;
        WithBag([&](ITaskBag& bag) {
            count = bag.CountEntries();
            return 4;
        });
        return count;
    }
};

TEST_F(TaskCount, IsThatOfTheEntriesOfTheSettingsTable) {
    EXPECT_EQ(Count(R"(, "settings": {"a": {"x": "1", "y": "2", "z": "3"}, "b": {}})"), 2U);
    EXPECT_EQ(Count(R"(, "settings": {})"), 0U);
    EXPECT_EQ(Count(""), 0U);
}

TEST_F(TaskCount, OfATaskThatGivesNoSettingsIs0) {
    for (const char* behaviour : {"\"absent\"", "\"null\"", "77"}) {
        EXPECT_EQ(Count(std::string(R"(, "settings": {"a": {}}, "accessors": {"get_settings": )") + behaviour + "}"),
                  0U);
    }
}

}  // namespace
