// A std::string that crosses, where module and bridge have the same C++ library.
#include "abi/AbiModuleTest.h"
#include "support/PolicyNotice.h"

namespace {

class DigestTest : public AbiTest {};

TEST_F(DigestTest, IsReadNatively) {
    if (!ThisPair().SharesLibrary()) {
        GTEST_SKIP() << "no std::string crosses between two C++ libraries";
    }
    environment.InstallAgent();
    // Too long to stand in the string itself.
    const std::string digest(100, 'd');
    ASSERT_EQ(ny_sim_policies_from_json(
                  (R"([{"softwareId": "ABI1000", "settingsObject": {"digest": ")" + digest + R"("}}])").c_str()),
              NY_OK);
    ASSERT_TRUE(module.Offer("DigestReader", id));
    ASSERT_TRUE(module.Enter(id, VsMsgbusServicePolicy));
    EXPECT_EQ(PolicyNotice(id).Answer(), NY_OK);
    EXPECT_EQ(module.log.Take(),
              (std::vector<std::string>{"GetDigest gives " + digest, "GetDigest gives 0 characters for null"}));
    EXPECT_TRUE(module.Exit(id));
    EXPECT_TRUE(module.Withdraw("Policies", id));
}

}  // namespace
