// The C++ layer, compiled into a module of either ABI.
#include "abi/AbiModuleTest.h"
#include "support/AgentUpdate.h"
#include "support/PolicyNotice.h"

namespace {

class AbiLayer : public AbiTest {
protected:
    AbiLayer() { environment.InstallAgent(); }

    bool Load(const char* productId) const {
        return module.Call<decltype(ModuleLoadLayer)>("ModuleLoadLayer", productId);
    }

    void TearDown() override {
        EXPECT_TRUE(module.Call<decltype(ModuleUnloadLayer)>("ModuleUnloadLayer"));
        EXPECT_EQ(Ask(id), std::vector<std::string>{"answer " + std::to_string(NY_SIM_NOT_REGISTERED)});
        AbiTest::TearDown();
    }
};

TEST_F(AbiLayer, ServesTheAgentAndCatchesWhatItsHandlersThrow) {
    ASSERT_EQ(ny_sim_policies_from_json(R"([
        {"softwareId": "ABI1000", "name": "N", "settingsObject": {"name": "P", "digest": "d1"},
         "sections": [{"name": "S", "settings": {"X": "1", "Y": "2"}}]}])"),
              NY_OK);
    ASSERT_TRUE(Load(id));
    EXPECT_EQ(Ask(id),
              (std::vector<std::string>{"answer 0", "General:Version=1.0", "General:Number=12", "General:Flag=true"}));
    EXPECT_EQ(PolicyNotice(id).Answer(), NY_OK);
    EXPECT_EQ(module.log.Take(), (std::vector<std::string>{"Walk S X", "Walk S Y", "Settings N 1", "Settings N 2",
                                                           "Section X 1", "Section Y 2", "Digests d1"}));
    EXPECT_EQ(Update(GetCall(id)), "answer 0, result 0, value <its value>");
    EXPECT_EQ(module.log.Take(), std::vector<std::string>{});
    EXPECT_EQ(Update(SetCall(id)), "answer 0, result 1");
    EXPECT_EQ(module.log.Take(), std::vector<std::string>{"log 3: the handler of updates threw: refused"});
}

TEST_F(AbiLayer, SaysWhyAProductCannotBeMade) {
    EXPECT_FALSE(Load(""));
    EXPECT_EQ(
        module.log.Take(),
        std::vector<std::string>{"entering the bridge as  failed: The product id must be a text that is not empty."});
    ASSERT_TRUE(Load(id));
}

}  // namespace
