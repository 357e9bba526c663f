// Memory that runs out while a property is set.
#include "property/CTheCollectProperties.h"
#include "support/CapturingSink.h"
#include "support/Collector.h"
#include "support/FailingMemory.h"
#include "values/ValuesTest.h"

namespace {

class PropertyMemory : public ValuesTest {
protected:
    void SetUp() override {
        ValuesTest::SetUp();
        environment.InstallAgent();
    }

    CapturingSink sink;
};

TEST_F(PropertyMemory, ThatRunsOutForTheLineOfARefusalCutsItAndWritesNoEmptyOne) {
    const std::string name(100, 'n');
    const std::string line = "5: Failed to add property for " + name + "= value, exception 66";
    size_t without = 0;
    Collector collector([&](VsKitMsgbus::INYCollectProperties::ISet& set) {
        const std::wstring wideName = Wide(name);
        for (std::vector<std::string> lines; !testing::Value(lines, testing::ElementsAre(line)); ++without) {
            ASSERT_LT(without, 20U);
            ASSERT_EQ(ny_sim_fail_call("ny_variant_create_from_wstring", 1, 66, NY_SIM_ONCE), NY_OK);
            {
                const FailingMemory memory(without, 1);
                EXPECT_FALSE(set.SetProperty(L"path", wideName.c_str(), L"value"));
            }
            lines = sink.log.Take();
            for (const std::string& written : lines) {
                EXPECT_THAT(line, testing::StartsWith(written));
                EXPECT_NE(written, "5: ");
            }
        }
    });
    // The refusal comes before the bag is looked at.
    auto* const bag = reinterpret_cast<ny_property_bag_t*>(&collector);
    CTheCollectProperties(&collector, &sink).Collect(bag, nullptr, [] { return false; });
    EXPECT_GT(without, 1U);
}

}  // namespace
