// Texts that count as a version of the agent's: at most 18 characters.
#include "VsMsgbus.h"
#include "support/BridgeTest.h"

using testing::IsEmpty;

namespace {

class Version : public BridgeTest, public testing::WithParamInterface<size_t> {
protected:
    // The longest text that the watcher reads.
    static constexpr size_t longest = 18;

    std::string Text() const { return std::string("5.7.0123456789012345").substr(0, GetParam()); }
    bool IsRead() const { return GetParam() != 0 && GetParam() <= longest; }

    Registration registration{"PRODUCT1000", collector};
};

TEST_P(Version, OfThisLengthAtEntry) {
    environment.InstallAgent("5.7.0");
    environment.Installer().WriteVersion(Text());
    const Product product("PRODUCT1000", &sink);
    ASSERT_TRUE(product.IsEntered());
    EXPECT_EQ(Ask("PRODUCT1000"), IsRead() ? answered : notAsked);
    UpgradeAndWait("5.7.1");
    EXPECT_EQ(Ask("PRODUCT1000"), answered);
    EXPECT_THAT(sink.log.Lines(), IsEmpty());
}

TEST_P(Version, OfThisLengthAsAnUpgrade) {
    environment.InstallAgent("5.7.0");
    const Product product("PRODUCT1000", &sink);
    environment.Installer().WriteVersion(Text());
    // A text that is not read is no agent; an empty one is a version like any other once the watcher runs.
    if (GetParam() <= longest) {
        ASSERT_TRUE(WatcherCalls("ny_property_register_provider_callback", 2));
        EXPECT_EQ(Ask("PRODUCT1000"), answered);
    } else {
        ASSERT_TRUE(WatcherCalls("ny_client_handler_release"));
        EXPECT_EQ(Ask("PRODUCT1000"), notAsked);
    }
    UpgradeAndWait("5.7.1");
    EXPECT_EQ(Ask("PRODUCT1000"), answered);
    EXPECT_THAT(sink.log.Lines(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Lengths, Version, testing::Values(0, 1, 17, 18, 19, 20));

}  // namespace
