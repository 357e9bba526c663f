// An agent whose libraries lack only the function that takes one kind of handle back: none of that kind is asked for.
#include "services/ServicesTest.h"
#include "support/LackingExport.h"

using testing::Contains;
using testing::IsEmpty;
using testing::Not;
using VsKitMsgbus::lpc_buffer;

namespace {

class LackingRelease : public InstalledAgentTest {
protected:
    // Calls `use` in the bridge while the agent lacks that function.
    template <class Use>
    void WhileLacking(const char* function, Use&& use) {
        const LackingExport lacking({environment.Installer().CurrentFolder()}, function);
        Product product("PRODUCT1000", &sink, 0);
        ASSERT_TRUE(product.IsEntered());
        ny_sim_clear_calls();
        const size_t before = ny_sim_live_handles(NY_SIM_ANY);
        use();
        EXPECT_EQ(ny_sim_live_handles(NY_SIM_ANY), before);
        product.Exit();
        EXPECT_TRUE(AgentIsLetGo());
    }
};

TEST_F(LackingRelease, OfBuffersFailsCrypto) {
    WhileLacking("ny_buffer_release", [&] {
        for (const auto function : {&VsKitMsgbusEncryptData, &VsKitMsgbusDecryptData, &VsKitMsgbusHashBuffer}) {
            const unsigned char data[] = {1, 2, 3};
            unsigned char out[100] = {0xEE};
            unsigned int size = 4711;
            EXPECT_EQ(function(data, sizeof data, out, &size, 0), -1);
            EXPECT_EQ(size, 4711U);
            EXPECT_EQ(out[0], 0xEE);
        }
        EXPECT_THAT(AgentCalls(), IsEmpty());
    });
    EXPECT_THAT(sink.log.Lines(), IsEmpty());
}

TEST_F(LackingRelease, OfVariantsFailsInformationByName) {
    ASSERT_EQ(ny_sim_set_information("GUID", "\"value\""), NY_OK);
    WhileLacking("ny_variant_release", [&] {
        lpc_buffer out;
        EXPECT_EQ(VsKitMsgbusGetInfoByKeyName("GUID", &out), NY_FUNCTION_MISSING);
        EXPECT_EQ(out.kind, 0U);
        EXPECT_EQ(out.data, nullptr);
        EXPECT_THAT(AgentCalls(), Not(Contains("ny_info_get")));
    });
    EXPECT_THAT(sink.log.Lines(), IsEmpty());
}

}  // namespace
