// Properties whose texts the agent misreports when it converts them. What '|', '?' and '!' in a text do is said in
// MisreportedTexts.h.
#include "property/PropertyTest.h"
#include "support/MisreportedTexts.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class MisreportedProperty : public ProductTest {
protected:
    MisreportedProperty() : ProductTest(VsMsgbusServiceProperty) {}

    MisreportedTexts texts;
};

TEST_F(MisreportedProperty, IsNamedOnlyAsFarAsTheAgentsLengths) {
    collector.collect = [](ISet& set) {
        EXPECT_TRUE(set.SetProperty(L"path|x", L"name|x", L"value|x"));
        EXPECT_TRUE(set.SetProperty(L"|x", L"name|", L""));
    };
    const Registration registration(productId, collector, &modulesSink);
    EXPECT_THAT(Ask(productId), ElementsAre("answer 0", "path:name=value|x", ":name="));
}

TEST_F(MisreportedProperty, HasAnEmptyPathOrNameWhereTheAgentGivesNull) {
    collector.collect = [](ISet& set) {
        EXPECT_TRUE(set.SetProperty(L"?", L"name", L"value"));
        EXPECT_TRUE(set.SetProperty(L"path", L"?", L"value"));
    };
    const Registration registration(productId, collector, &modulesSink);
    EXPECT_THAT(Ask(productId), ElementsAre("answer 0", ":name=value", "path:=value"));
}

TEST_F(MisreportedProperty, IsRefusedWhereNoMemoryHoldsTheLengthOfAName) {
    collector.collect = [](ISet& set) {
        EXPECT_FALSE(set.SetProperty(L"!", L"name", L"value"));
        EXPECT_FALSE(set.SetProperty(L"path", L"!", L"value"));
        EXPECT_TRUE(set.SetProperty(L"path", L"name", L"!"));
    };
    const Registration registration(productId, collector, &modulesSink);
    EXPECT_THAT(Ask(productId), ElementsAre("answer 0", "path:name=!"));
    EXPECT_THAT(modulesSink.log.Lines(), IsEmpty());
}

}  // namespace
