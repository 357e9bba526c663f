// The registry key of policy names, outside of transactions.
#include "policy/PolicyKey.h"

#include "support/AgentEnvironment.h"
#include "support/PolicyValues.h"
#include "support/SystemFunction.h"

namespace {

using testing::ElementsAre;

// Keeps what the registry is asked for, and which keys are open. One at a time.
class Keys {
public:
    Keys() { current = this; }

    LineLog asked;

private:
    static LSTATUS WINAPI Open(HKEY parent, const wchar_t* path, DWORD options, REGSAM access, HKEY* key) {
        current->asked.Add((parent == HKEY_LOCAL_MACHINE ? "open HKLM " : "open ? ") + Narrow(path) + " " +
                           std::to_string(options) + " " + std::to_string(access));
        return current->opening.original(parent, path, options, access, key);
    }
    static LSTATUS WINAPI Close(HKEY key) {
        current->asked.Add("close");
        return current->closing.original(key);
    }

    static inline Keys* current = nullptr;
    SystemFunction<decltype(::RegOpenKeyExW)> opening{&::RegOpenKeyExW, &Open};
    SystemFunction<decltype(::RegCloseKey)> closing{&::RegCloseKey, &Close};
};

class PolicyKeyTest : public AgentTest {
protected:
    static constexpr char open[] = R"(open HKLM SOFTWARE\Corvane\Endpoint\AV 0 983103)";

    PolicyKey key;
};

TEST_F(PolicyKeyTest, IsNotMadeWhenItIsNotThere) {
    EXPECT_EQ(key.Open(), ERROR_FILE_NOT_FOUND);
    EXPECT_FALSE(key.IsOpen());
    EXPECT_EQ(key.WriteText(L"Value", L"text"), ERROR_INVALID_HANDLE);
    EXPECT_FALSE(PolicyValues::HasKey());
}

TEST_F(PolicyKeyTest, IsOpenedWithFullAccessAndClosedOnce) {
    PolicyValues::MakeKey();
    const Keys keys;
    {
        PolicyKey opened;
        EXPECT_EQ(opened.Open(), ERROR_SUCCESS);
        EXPECT_TRUE(opened.IsOpen());
        opened.Close();
        EXPECT_FALSE(opened.IsOpen());
    }
    EXPECT_THAT(keys.asked.Lines(), ElementsAre(open, "close"));
}

TEST_F(PolicyKeyTest, IsClosedAtItsEnd) {
    PolicyValues::MakeKey();
    const Keys keys;
    { EXPECT_EQ(PolicyKey().Open(), ERROR_SUCCESS); }
    EXPECT_THAT(keys.asked.Lines(), ElementsAre(open, "close"));
}

TEST_F(PolicyKeyTest, TakesThePlaceOfTheOneThatWasHeld) {
    PolicyValues::MakeKey();
    ASSERT_EQ(key.Open(), ERROR_SUCCESS);
    const Keys keys;
    EXPECT_EQ(key.Open(), ERROR_SUCCESS);
    EXPECT_THAT(keys.asked.Lines(), ElementsAre(open, "close"));
    EXPECT_EQ(key.WriteText(L"Value", L"text"), ERROR_SUCCESS);
    EXPECT_EQ(PolicyValues::Read(L"Value"), L"text");
}

TEST_F(PolicyKeyTest, StaysWhenItCannotBeOpenedAgain) {
    PolicyValues::MakeKey();
    ASSERT_EQ(key.Open(), ERROR_SUCCESS);
    PolicyValues::DeleteKey();
    const Keys keys;
    EXPECT_EQ(key.Open(), ERROR_FILE_NOT_FOUND);
    EXPECT_TRUE(key.IsOpen());
    EXPECT_THAT(keys.asked.Lines(), ElementsAre(open));
    EXPECT_EQ(key.WriteText(L"Value", L"text"), ERROR_KEY_DELETED);
}

TEST_F(PolicyKeyTest, TakesNoNullText) {
    PolicyValues::MakeKey();
    ASSERT_EQ(key.Open(), ERROR_SUCCESS);
    EXPECT_EQ(key.WriteText(L"Value", nullptr), 13);
    EXPECT_EQ(PolicyValues::Read(L"Value"), PolicyValues::none);
}

}  // namespace
