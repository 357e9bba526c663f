// The texts about single properties, which go to no log: composed for a module that wants traces and has a sink.
#include "property/CTheCollectProperties.h"
#include "support/CapturingSink.h"
#include "support/Collector.h"
#include "support/UnloggedTexts.h"
#include "values/ValuesTest.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class PropertyTrace : public ValuesTest {
protected:
    void SetUp() override {
        ValuesTest::SetUp();
        environment.InstallAgent();
    }

    // The texts of one collection at that level: the module asks for it in the collection before.
    std::vector<std::string> TextsAt(int32_t level, VsKitMsgbus::ILogSink* modulesSink) {
        collector.getLogLevel = [level] { return level; };
        CTheCollectProperties properties(&collector, modulesSink);
        // The agent refuses before the bag is looked at.
        auto* const bag = reinterpret_cast<ny_property_bag_t*>(&collector);
        EXPECT_EQ(ny_sim_fail_call("ny_variant_create_from_wstring", 1, 66, NY_SIM_FROM_THEN_ON), NY_OK);
        properties.Collect(bag, nullptr, [] { return false; });
        const UnloggedTexts texts;
        properties.Collect(bag, nullptr, [] { return false; });
        return texts.log.Lines();
    }

    CapturingSink sink;
    Collector collector{[](VsKitMsgbus::INYCollectProperties::ISet& set) {
        EXPECT_FALSE(set.SetProperty(L"path", L"name", L"value"));
        EXPECT_FALSE(set.SetProperty(nullptr, nullptr, L"value"));
        EXPECT_FALSE(set.SetProperty(L"path", L"name", nullptr));
        EXPECT_FALSE(set.SetProperty(nullptr, nullptr, nullptr));
    }};
};

TEST_F(PropertyTrace, NameEachPropertyAndWhatIsSkipped) {
    for (const int32_t level : {4, 9}) {
        EXPECT_THAT(TextsAt(level, &sink),
                    ElementsAre("path:name=value", ":=value", "The value for path:name is null, skipping",
                                "The value for : is null, skipping"));
    }
}

TEST_F(PropertyTrace, AreForAModuleThatWantsThemAndHasASink) {
    EXPECT_THAT(TextsAt(3, &sink), IsEmpty());
    EXPECT_THAT(TextsAt(4, nullptr), IsEmpty());
}

}  // namespace
