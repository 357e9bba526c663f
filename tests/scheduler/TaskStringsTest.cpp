// The strings that a module's own C++ library holds of a task: Text and TaskName, which the header makes of what the
// bridge gives.
#include "scheduler/TaskTest.h"

namespace {

constexpr char settingsOfStrings[] = R"({"Scan": {
    "Text": "C:\\Documents \u00FC, which is too long to be kept in an object of a few bytes",
    "Empty": "",
    "Zero": "a\u0000b",
    "List": [1, 2]
}})";

class TaskStrings : public TaskTest {
protected:
    std::wstring NameOf(const std::string& members) {
        SetTasks(R"([{"id": "task", "product": "PRODUCT1000")" + members + "}]");
        std::wstring name = L"before";
        WithBag([&](ITaskBag& bag) {
            name = bag.TaskName();
            return 4;
        });
        return name;
    }
};

TEST_F(TaskStrings, OfASettingAreItsText) {
    WithSettings(settingsOfStrings, [](ITaskBag& bag) {
        EXPECT_EQ(bag.Text(L"Scan", L"Text"),
                  L"C:\\Documents \u00FC, which is too long to be kept in an object of a few bytes");
        EXPECT_EQ(bag.Text(L"Scan", L"Zero"), std::wstring(L"a\0b", 3));
        return 4;
    });
}

TEST_F(TaskStrings, OfASettingThatIsEmptyAbsentOrNoTextAreEmpty) {
    WithSettings(settingsOfStrings, [](ITaskBag& bag) {
        EXPECT_EQ(bag.Text(L"Scan", L"Empty"), L"");
        EXPECT_EQ(bag.Text(L"Scan", L"text"), L"");
        EXPECT_EQ(bag.Text(L"Report", L"Text"), L"");
        EXPECT_EQ(bag.Text(L"", L"Text"), L"");
        EXPECT_EQ(bag.Text(nullptr, L"Text"), L"");
        EXPECT_EQ(bag.Text(L"Scan", nullptr), L"");
        EXPECT_EQ(bag.Text(L"Scan", L"List"), L"");
        return 4;
    });
}

TEST_F(TaskStrings, OfTheNameAreItsText) {
    EXPECT_EQ(NameOf(R"(, "name": "\u00DC %s \u4EFB, which is too long to be kept in an object of a few bytes")"),
              L"\u00DC %s \u4EFB, which is too long to be kept in an object of a few bytes");
}

TEST_F(TaskStrings, OfANameThatIsEmptyAbsentOrNotToldAreEmpty) {
    EXPECT_EQ(NameOf(R"(, "name": "")"), L"");
    EXPECT_EQ(NameOf(""), L"");
    EXPECT_EQ(NameOf(R"(, "name": "name", "accessors": {"get_name": "absent"})"), L"");
    EXPECT_EQ(NameOf(R"(, "name": "name", "accessors": {"get_name": 77})"), L"");
}

// The last moment at which a bag may be read: it ends with the call.
TEST_F(TaskStrings, AreEmptyWhenTheModuleHasLeftTheBridgeInside) {
    WithSettings(settingsOfStrings, [this](ITaskBag& bag) {
        EXPECT_NE(bag.Text(L"Scan", L"Text"), L"");
        product.Exit();
        EXPECT_EQ(bag.Text(L"Scan", L"Text"), L"");
        EXPECT_EQ(bag.TaskName(), L"");
        return 4;
    });
}

}  // namespace
