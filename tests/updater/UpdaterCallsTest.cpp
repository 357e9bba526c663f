// The calls from the agent's updater to a module, and the module's answers on their way back.
#include <climits>

#include "updater/UpdateTest.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class UpdaterCalls : public UpdateTest {};

TEST_F(UpdaterCalls, IgnoreTheFourthNotificationWithACallbackAndWithout) {
    EXPECT_EQ(Update(EventCall()), "answer 0");
    const UpdateRegistration registration(productId, callback);
    EXPECT_EQ(Update(EventCall()), "answer 0");
    EXPECT_THAT(callback.log.Lines(), IsEmpty());
    EXPECT_THAT(sink.log.Lines(), IsEmpty());
}

TEST_F(UpdaterCalls, ComeWhateverTheContextOfTheRegistrationIs) {
    EXPECT_TRUE(VsKitMsgbusSetUpdateNotify(L"PRODUCT1000", &callback, reinterpret_cast<void*>(uintptr_t{1})));
    EXPECT_EQ(Update(NotifyCall()), notified);
    EXPECT_TRUE(VsKitMsgbusRemoveUpdateNotify(L"PRODUCT1000"));
}

TEST_F(UpdaterCalls, HandEveryResultToTheAgentUnchanged) {
    const UpdateRegistration registration(productId, callback);
    for (const int32_t result : {0, 1, 2, 3, -1, 705, INT_MAX, INT_MIN}) {
        const std::string expected = "answer 0, result " + std::to_string(result);
        callback.onNotify = [result](uint32_t&) { return result; };
        callback.onSet = [result] { return result; };
        callback.onGet = [result](ISet&) { return result; };
        EXPECT_EQ(Update(NotifyCall()), expected);
        EXPECT_EQ(Update(SetCall()), expected);
        EXPECT_EQ(Update(GetCall()), expected + ", value <>");
    }
}

TEST_F(UpdaterCalls, LendTheModuleANumberOfItsOwn) {
    callback.onNotify = [](uint32_t& number) {
        EXPECT_EQ(number, 4294967295U);
        number = 1;
        return 5;
    };
    const UpdateRegistration registration(productId, callback);
    const std::string call = R"({"call": "update notify", "product": "PRODUCT1000", "number": 4294967295})";
    EXPECT_EQ(Update(call), "answer 0, result 5");
    EXPECT_EQ(Update(call), "answer 0, result 5");
}

TEST_F(UpdaterCalls, PassEmptyTextsForThoseThatTheAgentLacks) {
    const UpdateRegistration registration(productId, callback);
    EXPECT_EQ(Update(R"({"call": "update notify", "product": "PRODUCT1000"})"), notified);
    EXPECT_EQ(Update(R"({"call": "set product info", "product": "PRODUCT1000", "value": ""})"), wasSet);
    EXPECT_EQ(Update(R"({"call": "get product info", "product": "PRODUCT1000"})"), got);
    EXPECT_THAT(callback.log.Lines(),
                ElementsAre("UpdateNotify(, , , 0)", "SetProductInfo(, , )", "GetProductInfo(, )"));
}

TEST_F(UpdaterCalls, WithoutAValueToSetAreNotPassedOn) {
    const UpdateRegistration registration(productId, callback);
    EXPECT_EQ(Update(R"({"call": "set product info", "product": "PRODUCT1000", "key": "a key"})"), notAvailable);
    EXPECT_THAT(callback.log.Lines(), IsEmpty());
}

TEST_F(UpdaterCalls, WithAValueThatIsNoTextAreNotPassedOn) {
    const UpdateRegistration registration(productId, callback);
    EXPECT_EQ(Update(R"({"call": "set product info", "product": "PRODUCT1000", "value": {}})"), notAvailable);
    EXPECT_EQ(Update(R"({"call": "set product info", "product": "PRODUCT1000", "value": []})"), notAvailable);
    EXPECT_THAT(callback.log.Lines(), IsEmpty());
    EXPECT_EQ(Update(R"({"call": "set product info", "product": "PRODUCT1000", "value": 12})"), wasSet);
    EXPECT_THAT(callback.log.Lines(), ElementsAre("SetProductInfo(, , 12)"));
}

TEST_F(UpdaterCalls, WithNowhereToPutTheAnswerReachTheModuleAllTheSame) {
    callback.onGet = [](ISet& set) { return set.Set(L"the value") ? 33 : 0; };
    const UpdateRegistration registration(productId, callback);
    const std::string withoutResult = R"(, "product": "PRODUCT1000", "without": ["result"]})";
    EXPECT_EQ(Update(R"({"call": "update notify")" + withoutResult), "answer 0");
    EXPECT_EQ(Update(R"({"call": "set product info", "value": "")" + withoutResult), "answer 0");
    EXPECT_EQ(Update(R"({"call": "get product info")" + withoutResult), "answer 0, value <the value>");
    EXPECT_EQ(Update(R"({"call": "get product info", "product": "PRODUCT1000", "without": ["out"]})"),
              "answer 0, result 33");
    EXPECT_EQ(Update(R"({"call": "get product info", "product": "PRODUCT1000", "without": ["out", "result"]})"),
              "answer 0");
    EXPECT_EQ(callback.log.Lines().size(), 5U);
}

TEST_F(UpdaterCalls, WithoutAProductAreRefusedWithTheResultOfNoCallback) {
    const UpdateRegistration registration(productId, callback);
    const std::string without = R"(, "product": "PRODUCT1000", "without": ["product"]})";
    EXPECT_EQ(Update(R"({"call": "update notify")" + without), "answer 3, result 2");
    EXPECT_EQ(Update(R"({"call": "set product info", "value": "")" + without), "answer 3, result 1");
    EXPECT_EQ(Update(R"({"call": "get product info")" + without), "answer 3, result 1");
    EXPECT_EQ(Update(R"({"call": "event")" + without), "answer 3");
    EXPECT_THAT(callback.log.Lines(), IsEmpty());
}

TEST_F(UpdaterCalls, PassTextsOfEveryAlphabetAndLength) {
    const std::string longText(70000, 'x');
    const UpdateRegistration registration(productId, callback);
    for (const std::string& text : {std::string("\xC3\xA9"), std::string("\xE4\xBA\xA7\xE5\x93\x81"),
                                    std::string("\xF0\x9F\x98\x80"), std::string("100% %s"), longText}) {
        callback.onGet = [&](ISet& set) { return set.Set(Wide(text).c_str()) ? 0 : 1; };
        EXPECT_EQ(Update(R"({"call": "set product info", "product": "PRODUCT1000", "key": ")" + text +
                         R"(", "value": ")" + text + R"("})"),
                  wasSet);
        EXPECT_THAT(callback.log.Take(), ElementsAre("SetProductInfo(, " + text + ", " + text + ")"));
        EXPECT_EQ(Update(GetCall()), "answer 0, result 0, value <" + text + ">");
        callback.log.Take();
    }
}

// The module's texts end at the first zero.
TEST_F(UpdaterCalls, PassAValueWithAZeroInItUpToThere) {
    const UpdateRegistration registration(productId, callback);
    EXPECT_EQ(Update(R"({"call": "set product info", "product": "PRODUCT1000", "value": "be\u0000hind"})"), wasSet);
    EXPECT_THAT(callback.log.Lines(), ElementsAre("SetProductInfo(, , be)"));
}

class ProductInfo : public UpdateTest {
protected:
    // The value that the agent gets from a module whose GetProductInfo does `give`; "(none)" without one.
    std::string ValueOf(std::function<void(ISet&)> give) {
        callback.onGet = [give = std::move(give)](ISet& set) {
            give(set);
            return 0;
        };
        const UpdateRegistration registration(productId, callback);
        return AgentUpdate(GetCall()).Value().value_or("(none)");
    }
};

TEST_F(ProductInfo, IsEmptyWhenTheModuleSetsNothing) {
    EXPECT_EQ(ValueOf([](ISet&) {}), "");
}

TEST_F(ProductInfo, IsEmptyWhenTheModuleSetsNothingAfterAnAnswerThatHadAValue) {
    EXPECT_EQ(ValueOf([](ISet& set) { set.Set(L"first"); }), "first");
    EXPECT_EQ(ValueOf([](ISet&) {}), "");
}

TEST_F(ProductInfo, IsEmptyForNullAndForAnEmptyText) {
    EXPECT_EQ(ValueOf([](ISet& set) { EXPECT_TRUE(set.Set(nullptr)); }), "");
    EXPECT_EQ(ValueOf([](ISet& set) { EXPECT_TRUE(set.Set(L"")); }), "");
}

TEST_F(ProductInfo, IsTheLastValueThatTheModuleSets) {
    EXPECT_EQ(ValueOf([](ISet& set) {
                  EXPECT_TRUE(set.Set(L"a first and long value"));
                  EXPECT_TRUE(set.Set(L"second"));
              }),
              "second");
}

TEST_F(ProductInfo, IsEmptiedByNullAndByAnEmptyTextAfterAValue) {
    for (const wchar_t* const emptying : {static_cast<const wchar_t*>(nullptr), L""}) {
        EXPECT_EQ(ValueOf([emptying](ISet& set) {
                      EXPECT_TRUE(set.Set(L"first"));
                      EXPECT_TRUE(set.Set(emptying));
                  }),
                  "");
    }
}

TEST_F(ProductInfo, IsGivenWhateverTheResultIs) {
    callback.onGet = [](ISet& set) {
        set.Set(L"value");
        return -1;
    };
    const UpdateRegistration registration(productId, callback);
    EXPECT_EQ(Update(GetCall()), "answer 0, result -1, value <value>");
}

TEST_F(ProductInfo, LendsTheModulesTextOnlyForTheCall) {
    EXPECT_EQ(ValueOf([](ISet& set) {
                  wchar_t text[] = L"value";
                  EXPECT_TRUE(set.Set(text));
                  text[0] = L'X';
              }),
              "value");
}

}  // namespace
