// A module reads a task through the bag.
#include <climits>
#include <thread>

#include "scheduler/TaskTest.h"

using VsKitMsgbus::lpc_buffer;

namespace {

constexpr char settings[] = R"({"Scan": {
    "Text": "C:\\Documents \u00FC",
    "Empty": "",
    "Number": 12,
    "Nothing": null,
    "List": [1, 2],
    "Table": {"a": "b"},
    "\u00DC %s": "own letters",
    "": "no name",
    "Zero": "a\u0000b",
    "Beyond": "\uD83D\uDE00"
}})";

class Setting : public TaskTest {
protected:
    static std::string TextOf(ITaskBag& bag, const wchar_t* name, const wchar_t* section = L"Scan") {
        lpc_buffer text;
        if (!bag.GetText(section, name, &text)) {
            EXPECT_EQ(text.kind, lpc_buffer::Empty);
            EXPECT_EQ(text.data, nullptr);
            return "(false)";
        }
        return TakeText(text);
    }

    static void ExpectNothing(ITaskBag& bag, const wchar_t* section, const wchar_t* name) {
        bool boolean = true;
        int32_t integer = 77;
        EXPECT_EQ(TextOf(bag, name, section), "(false)");
        EXPECT_FALSE(bag.GetBoolean(section, name, &boolean));
        EXPECT_FALSE(boolean);
        EXPECT_FALSE(bag.GetInteger(section, name, &integer));
        EXPECT_EQ(integer, 0);
    }
};

TEST_F(Setting, IsGivenAsText) {
    WithSettings(settings, [](ITaskBag& bag) {
        EXPECT_EQ(TextOf(bag, L"Text"), "C:\\Documents \xC3\xBC");
        EXPECT_EQ(TextOf(bag, L"Empty"), "");
        EXPECT_EQ(TextOf(bag, L"Number"), "12");
        EXPECT_EQ(TextOf(bag, L"Nothing"), "null");
        EXPECT_EQ(TextOf(bag, L"\u00DC %s"), "own letters");
        EXPECT_EQ(TextOf(bag, L""), "no name");
        EXPECT_EQ(TextOf(bag, L"Zero"), std::string("a\0b", 3));
        EXPECT_EQ(TextOf(bag, L"Beyond"), "\xF0\x9F\x98\x80");
        return 4;
    });
}

TEST_F(Setting, ThatIsNoTextIsNotGiven) {
    WithSettings(settings, [](ITaskBag& bag) {
        ExpectNothing(bag, L"Scan", L"List");
        ExpectNothing(bag, L"Scan", L"Table");
        return 4;
    });
}

TEST_F(Setting, ThatIsMissingIsNotGiven) {
    WithSettings(settings, [](ITaskBag& bag) {
        ExpectNothing(bag, L"Scan", L"text");
        ExpectNothing(bag, L"Scan", L"Text ");
        ExpectNothing(bag, L"scan", L"Text");
        ExpectNothing(bag, L"Report", L"To");
        return 4;
    });
}

TEST_F(Setting, OfNoSectionIsNotGivenAndTheAgentNotAsked) {
    WithSettings(R"({"": {"Text": "TRUE"}})", [](ITaskBag& bag) {
        ny_sim_clear_calls();
        ExpectNothing(bag, nullptr, L"Text");
        ExpectNothing(bag, L"", L"Text");
        ExpectNothing(bag, L"Scan", nullptr);
        ExpectNothing(bag, nullptr, nullptr);
        EXPECT_FALSE(bag.GetBoolean(L"Scan", L"Text", nullptr));
        EXPECT_FALSE(bag.GetInteger(L"Scan", L"Text", nullptr));
        EXPECT_FALSE(bag.GetText(L"Scan", L"Text", nullptr));
        EXPECT_FALSE(bag.GetTaskName(nullptr));
        EXPECT_EQ(ny_sim_call_count(nullptr), 0U);
        return 4;
    });
}

TEST_F(Setting, OfATaskThatGivesNoSettingsIsNotGiven) {
    for (const char* behaviour : {"\"absent\"", "\"null\"", "77"}) {
        SetTasks(std::string(R"([{"id": "task", "product": "PRODUCT1000", "settings": {"Scan": {"Text": "TRUE"}},
                                  "accessors": {"get_setting": )") +
                 behaviour + "}}]");
        WithBag([](ITaskBag& bag) {
            ExpectNothing(bag, L"Scan", L"Text");
            return 4;
        });
    }
}

TEST_F(Setting, IsTrueAsABooleanWhenItIsTrueOrFalseInAnyCase) {
    WithSettings(R"({"Scan": {"a": "TRUE", "b": "FALSE", "c": "true", "d": "False", "e": "tRuE", "f": "fALSe",
                              "g": true, "h": false}})",
                 [](ITaskBag& bag) {
                     for (const wchar_t* name : {L"a", L"b", L"c", L"d", L"e", L"f", L"g", L"h"}) {
                         bool value = false;
                         EXPECT_TRUE(bag.GetBoolean(L"Scan", name, &value)) << Narrow(name);
                         EXPECT_TRUE(value) << Narrow(name);
                     }
                     return 4;
                 });
}

TEST_F(Setting, IsFalseAsABooleanWhenItIsAnythingElse) {
    WithSettings(R"({"Scan": {"a": "TRUEX", "b": "yes", "c": "", "d": "1", "e": "TRU", "f": "FALSEX", "g": " TRUE",
                              "h": "0", "i": "T\u00DCRUE", "j": 1}})",
                 [](ITaskBag& bag) {
                     for (const wchar_t* name : {L"a", L"b", L"c", L"d", L"e", L"f", L"g", L"h", L"i", L"j"}) {
                         bool value = true;
                         EXPECT_FALSE(bag.GetBoolean(L"Scan", name, &value)) << Narrow(name);
                         EXPECT_FALSE(value) << Narrow(name);
                     }
                     return 4;
                 });
}

TEST_F(Setting, IsANumberUpToWhatIsNone) {
    const std::pair<const char*, int32_t> cases[] = {
        {"12", 12},
        {"-12", -12},
        {"+12", 12},
        {"  12", 12},
        {"\\t\\n12", 12},
        {"12abc", 12},
        {"abc", 0},
        {"", 0},
        {"-", 0},
        {"- 1", 0},
        {"1.9", 1},
        {"0x10", 0},
        {"010", 10},
        {"2147483647", INT_MAX},
        {"2147483648", INT_MAX},
        {"-2147483648", INT_MIN},
        {"-2147483649", INT_MIN},
        {"99999999999999999999999", INT_MAX},
        {"-99999999999999999999999", INT_MIN},
    };
    for (const auto& [text, number] : cases) {
        WithSettings(std::string(R"({"Scan": {"Number": ")") + text + "\"}}", [expected = number](ITaskBag& bag) {
            int32_t value = 77;
            EXPECT_TRUE(bag.GetInteger(L"Scan", L"Number", &value));
            EXPECT_EQ(value, expected);
            return 4;
        });
    }
}

TEST_F(Setting, TakesThePlaceOfTheTextBefore) {
    WithSettings(settings, [](ITaskBag& bag) {
        lpc_buffer text;
        EXPECT_TRUE(bag.GetText(L"Scan", L"Text", &text));
        EXPECT_TRUE(bag.GetText(L"Scan", L"Number", &text));
        EXPECT_EQ(text.length, 2U);
        EXPECT_FALSE(bag.GetText(L"Scan", L"none", &text));
        EXPECT_EQ(text.kind, lpc_buffer::Empty);
        EXPECT_EQ(text.data, nullptr);
        return 4;
    });
}

TEST_F(Setting, OfAMillionCharactersIsGivenWhole) {
    const std::string longText(1024 * 1024, 'x');
    WithSettings(R"({"Scan": {"Text": ")" + longText + "\"}}", [&](ITaskBag& bag) {
        // Compared as a whole without being printed.
        EXPECT_TRUE(TextOf(bag, L"Text") == longText);
        return 4;
    });
}

TEST_F(Setting, MayBeReadOnAThreadThatTheCallWaitsFor) {
    WithSettings(settings, [](ITaskBag& bag) {
        std::thread([&] { EXPECT_EQ(TextOf(bag, L"Number"), "12"); }).join();
        return 4;
    });
}

TEST_F(Setting, IsReadInEveryOperation) {
    const TaskEnforcerRegistration registration(productId, enforcer);
    int reads = 0;
    const TaskEnforcer::Operation read = [&](ITaskBag& bag) {
        reads += TextOf(bag, L"Depth") == "12" ? 1 : 0;
        return 4;
    };
    enforcer.execute = enforcer.stop = enforcer.remove = enforcer.updateStatus = read;
    for (const auto operation : allTaskOperations) {
        EXPECT_EQ(AnswerOf("task", operation), NY_OK);
    }
    EXPECT_EQ(reads, 4);
}

class TaskName : public TaskTest {
protected:
    std::string NameOf(const std::string& members) {
        SetTasks(R"([{"id": "task", "product": "PRODUCT1000")" + members + "}]");
        std::string given;
        WithBag([&](ITaskBag& bag) {
            lpc_buffer name;
            const bool isGiven = bag.GetTaskName(&name);
            EXPECT_EQ(isGiven, name.kind == lpc_buffer::WideText);
            given = isGiven ? TakeText(name) : "(false)";
            return 4;
        });
        return given;
    }
};

TEST_F(TaskName, IsGivenInEveryAlphabet) {
    EXPECT_EQ(NameOf(R"(, "name": "The task")"), "The task");
    EXPECT_EQ(NameOf(R"(, "name": "\u00DC %s \u4EFB")"), "\xC3\x9C %s \xE4\xBB\xBB");
}

TEST_F(TaskName, ThatIsMissingIsEmpty) {
    EXPECT_EQ(NameOf(R"(, "name": "")"), "");
    EXPECT_EQ(NameOf(""), "");
}

TEST_F(TaskName, ThatTheAgentDoesNotTellIsFalse) {
    EXPECT_EQ(NameOf(R"(, "name": "name", "accessors": {"get_name": "absent"})"), "(false)");
    EXPECT_EQ(NameOf(R"(, "name": "name", "accessors": {"get_name": 77})"), "(false)");
}

}  // namespace
