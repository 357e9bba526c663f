// Making the agent fail.
#include "simulator/SimulatorTest.h"

namespace {

using testing::ElementsAre;

class FaultTest : public SimulatorTest {
protected:
    // The answers of so many calls of a function that otherwise answers NY_OK.
    std::vector<int32_t> Answers(size_t count) const {
        std::vector<int32_t> answers;
        while (answers.size() < count) {
            answers.push_back(Call<&ny_variant_init>());
        }
        return answers;
    }
};

TEST_F(FaultTest, StrikeOnceAtTheNthCallFromNow) {
    EXPECT_THAT(Answers(2), ElementsAre(0, 0));
    ASSERT_EQ(ny_sim_fail_call("ny_variant_init", 2, 77, NY_SIM_ONCE), NY_OK);
    EXPECT_THAT(Answers(4), ElementsAre(0, 77, 0, 0));
}

TEST_F(FaultTest, StrikeFromThenOn) {
    ASSERT_EQ(ny_sim_fail_call("ny_variant_init", 3, 77, NY_SIM_FROM_THEN_ON), NY_OK);
    EXPECT_THAT(Answers(5), ElementsAre(0, 0, 77, 77, 77));
    ny_sim_clear_faults();
    EXPECT_THAT(Answers(1), ElementsAre(0));
}

TEST_F(FaultTest, AreReplacedByTheNextOneOfTheSameFunction) {
    ASSERT_EQ(ny_sim_fail_call("ny_variant_init", 1, 77, NY_SIM_FROM_THEN_ON), NY_OK);
    ASSERT_EQ(ny_sim_fail_call("ny_variant_init", 2, -5, NY_SIM_ONCE), NY_OK);
    EXPECT_THAT(Answers(3), ElementsAre(0, -5, 0));
}

TEST_F(FaultTest, StrikeTheirOwnFunctionOnly) {
    ASSERT_EQ(ny_sim_fail_call("ny_variant_init", 1, 77, NY_SIM_ONCE), NY_OK);
    EXPECT_EQ(Call<&ny_variant_deinit>(), NY_OK);
    EXPECT_THAT(Answers(1), ElementsAre(77));
}

TEST_F(FaultTest, KeepTheFunctionFromDoingAnything) {
    ny_variant_t* const variant = FromJson("1");
    ASSERT_EQ(ny_sim_fail_call("ny_variant_release", 1, 77, NY_SIM_ONCE), NY_OK);
    EXPECT_EQ(Call<&ny_variant_release>(variant), 77);
    EXPECT_EQ(ny_sim_live_handles(NY_SIM_VARIANT), 1U);
    EXPECT_EQ(Call<&ny_variant_release>(variant), NY_OK);
}

TEST_F(FaultTest, AreCountedForTheirFunctionWhateverIsCleared) {
    const size_t before = ny_sim_fault_count("ny_variant_init");
    const size_t ofOther = ny_sim_fault_count("ny_variant_deinit");
    ASSERT_EQ(ny_sim_fail_call("ny_variant_init", 2, 77, NY_SIM_FROM_THEN_ON), NY_OK);
    EXPECT_THAT(Answers(3), ElementsAre(0, 77, 77));
    ny_sim_clear_calls();
    ny_sim_reset();
    EXPECT_THAT(Answers(1), ElementsAre(0));
    EXPECT_EQ(ny_sim_fault_count("ny_variant_init"), before + 2);
    EXPECT_EQ(ny_sim_fault_count("ny_variant_deinit"), ofOther);
    EXPECT_EQ(ny_sim_fault_count("ny_variant_inti"), 0U);
    EXPECT_EQ(ny_sim_fault_count(nullptr), 0U);
}

TEST_F(FaultTest, AreForgottenByAReset) {
    ASSERT_EQ(ny_sim_fail_call("ny_variant_init", 1, 77, NY_SIM_FROM_THEN_ON), NY_OK);
    ny_sim_reset();
    EXPECT_THAT(Answers(2), ElementsAre(0, 0));
}

TEST_F(FaultTest, AreRefusedForNamesThatAreNotSimulatedAndForNonsense) {
    for (const char* name : {"ny_variant_inti", "ny_crypto_name", ""}) {
        EXPECT_EQ(ny_sim_fail_call(name, 1, 77, NY_SIM_ONCE), NY_SIM_NOT_SIMULATED) << name;
        EXPECT_EQ(ny_sim_set_hook(name, nullptr, nullptr), NY_SIM_NOT_SIMULATED) << name;
    }
    EXPECT_EQ(ny_sim_fail_call(nullptr, 1, 77, NY_SIM_ONCE), NY_INVALID_ARGUMENT);
    EXPECT_EQ(ny_sim_set_hook(nullptr, nullptr, nullptr), NY_INVALID_ARGUMENT);
    EXPECT_EQ(ny_sim_fail_call("ny_variant_init", 0, 77, NY_SIM_ONCE), NY_INVALID_ARGUMENT);
    EXPECT_EQ(ny_sim_fail_call("ny_variant_init", 1, 77, static_cast<ny_sim_fault_mode>(2)), NY_INVALID_ARGUMENT);
    EXPECT_THAT(Answers(1), ElementsAre(0));
}

TEST_F(FaultTest, AnswerNotSimulatedForAFunctionWithNothingBehindIt) {
    const FARPROC name = libraries->Find("ny_crypto_name");
    ASSERT_NE(name, nullptr);
    EXPECT_EQ(reinterpret_cast<int32_t (*)()>(reinterpret_cast<void*>(name))(), NY_SIM_NOT_SIMULATED);
}

}  // namespace
