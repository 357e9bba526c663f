// Properties whose texts the agent misreports when it converts them.
#include "property/PropertyTest.h"
#include "support/MisreportedTexts.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class MisreportedProperty : public InstalledAgentTest {
protected:
    // The product leaves before the machine that it is on goes.
    void TearDown() override {
        product.Exit();
        BridgeTest::TearDown();
    }

    MisreportedTexts texts;
    CapturingSink modulesSink;
    Product product{productId, &sink};
};

TEST_F(MisreportedProperty, IsNamedOnlyAsFarAsTheAgentsLengths) {
    collector.collect = [](ISet& set) {
        EXPECT_TRUE(set.SetProperty(L"path|x", L"name|x", L"value|x"));
        EXPECT_TRUE(set.SetProperty(L"|x", L"name|", L""));
    };
    const Registration registration(productId, collector, &modulesSink);
    EXPECT_THAT(Ask(productId), ElementsAre("answer 0", "path:name=value|x", ":name="));
}

TEST_F(MisreportedProperty, HasAnEmptyNameWhereTheAgentGivesNone) {
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
