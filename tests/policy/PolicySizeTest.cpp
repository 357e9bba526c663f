// Policies of any size: many settings, many containers, long texts.
#include "policy/PolicyTest.h"
#include "support/BuildKind.h"

namespace {

class PolicySize : public PolicyTest {};

// Counts what it is told.
class CountingCallbacks final : public ICallbacks {
public:
    bool OnContainer(const wchar_t*, const wchar_t*, const wchar_t*, const wchar_t*) override {
        ++containers;
        return true;
    }
    bool OnSettings(const wchar_t*, const wchar_t*, const wchar_t*) override { return true; }
    bool OnSection(const wchar_t*, const wchar_t*) override { return true; }
    bool OnSetting(const wchar_t*, const wchar_t* name, const wchar_t* value) override {
        // Each is named by its number and has it as its value.
        areRight = areRight && std::to_wstring(settings) == name && std::wstring(name) == value;
        ++settings;
        return true;
    }

    int containers = 0;
    int settings = 0;
    bool areRight = true;
};

TEST_F(PolicySize, OfAHundredThousandSettingsInOneSection) {
    constexpr int count = isWindows ? 100000 : 10000;
    std::string json = R"([{"softwareId": "PRODUCT1000", "sections": [{"settings": [)";
    for (int i = 0; i < count; ++i) {
        const std::string number = std::to_string(i);
        json += (i == 0 ? "" : ",") + ("[\"" + number) + "\",\"" + number + "\"]";
    }
    HoldPolicies(json + "]}]}]");
    CountingCallbacks callbacks;
    EXPECT_EQ(Enforce([&](IPolicyBag& bag) { EXPECT_TRUE(bag.EnumeratePolicies(wideId, &callbacks)); }), NY_OK);
    EXPECT_EQ(callbacks.settings, count);
    EXPECT_TRUE(callbacks.areRight);
}

TEST_F(PolicySize, OfTenThousandContainers) {
    constexpr int count = isWindows ? 10000 : 1000;
    std::string json = "[";
    for (int i = 0; i < count; ++i) {
        json += std::string(i == 0 ? "" : ",") + R"({"softwareId": "PRODUCT1000", "settingsObject": {"digest": "d"}})";
    }
    HoldPolicies(json + "]");
    CountingCallbacks callbacks;
    std::string digest;
    EXPECT_EQ(Enforce([&](IPolicyBag& bag) {
                  EXPECT_TRUE(bag.EnumeratePolicies(wideId, &callbacks));
                  digest = bag.GetDigest("PRODUCT1000");
              }),
              NY_OK);
    EXPECT_EQ(callbacks.containers, count);
    EXPECT_TRUE(digest == std::string(count, 'd'));
}

TEST_F(PolicySize, OfTextsOfAMillionCharacters) {
    const std::string text(isWindows ? 1024 * 1024 : 64 * 1024, 'x');
    const std::string quoted = '"' + text + '"';
    HoldPolicies(R"([{"softwareId": "PRODUCT1000", "name": )" + quoted + R"(, "settingsObject": {"digest": )" + quoted +
                 R"(}, "sections": [{"name": )" + quoted + R"(, "settings": {)" + quoted + ": " + quoted + "}}]}]");
    const Lines lines = Walk();
    ASSERT_EQ(lines.size(), 4U);
    // Compared as a whole without being printed.
    EXPECT_TRUE(lines[0] == "container (null)|(null)|(null)|" + text);
    EXPECT_TRUE(lines[2] == "section " + text);
    EXPECT_TRUE(lines[3] == "setting " + text + ": " + text + "=" + text);
    Enforce([&](IPolicyBag& bag) {
        EXPECT_TRUE(bag.GetDigest("PRODUCT1000") == text);
        EXPECT_TRUE(Dump(bag) == "    Container FeatureId[<null>] pCatagoryId[<null>] pTypeId[<null>] pName[" + text +
                                     "]\n      Settings Name=[<null>] pIntParam[<null>] pStrParam[<null>]\n" +
                                     "         Section Name=[" + text + "]\n             " + text + "=[" + text +
                                     "]\n");
    });
}

}  // namespace
