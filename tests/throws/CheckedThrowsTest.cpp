// The checking bridge's findings about exceptions of modules of either compiler. Left out beside other bridges.
#include <gmock/gmock.h>

#include "support/AgentEnvironment.h"
#include "support/AgentRequest.h"
#include "support/LogFile.h"
#include "support/OnPurpose.h"
#include "support/Text.h"
#include "throws/LoadedThrowingModule.h"

namespace {

class CheckedThrows : public AgentTest {
protected:
    CheckedThrows() {
        environment.InstallAgent();
        ::SetEnvironmentVariableW(L"VSMSGBUS_CHECK_FILE", file.path.c_str());
    }
    ~CheckedThrows() override { ::SetEnvironmentVariableW(L"VSMSGBUS_CHECK_FILE", nullptr); }
    void SetUp() override {
        if (::GetProcAddress(::GetModuleHandleA("VsMsgbus.dll"), "VsMsgbusCheckFindings") == nullptr) {
            GTEST_SKIP() << "not the checking bridge";
        }
    }

    // A finding is told once for a product: each test has its own.
    std::string TextOfThrow(const std::string& id, Thrown thrown) {
        EXPECT_TRUE(module->enter(id.c_str(), Wide(id).c_str()));
        module.ThrowFrom(Place::CollectProperties, thrown);
        EXPECT_EQ(AgentRequest(id).Answer(), thrown == Thrown::AgentException ? 77 : 3);
        module.ThrowNothing();
        EXPECT_TRUE(module->leave(id.c_str(), Wide(id).c_str()));
        AgentIsLetGo();
        return file.Text();
    }

    LoadedThrowingModule module;
    LogFile file;

private:
    const OnPurpose mistakes{"CALLBACK-THREW"};
};

TEST_F(CheckedThrows, AStandardExceptionIsToldWithItsTypeAndText) {
    EXPECT_THAT(
        TextOfThrow("THROWS1000", Thrown::RuntimeError),
        testing::HasSubstr(
            "[CALLBACK-THREW] THROWS1000: CollectProperties throws std::runtime_error (\"a text that is too long "));
}

TEST_F(CheckedThrows, ANumberIsToldWithItsType) {
    EXPECT_THAT(TextOfThrow("THROWS2000", Thrown::Number),
                testing::HasSubstr("[CALLBACK-THREW] THROWS2000: CollectProperties throws int: "));
}

TEST_F(CheckedThrows, TheAgentsExceptionIsToldAndAnsweredWithItsCode) {
    EXPECT_THAT(TextOfThrow("THROWS3000", Thrown::AgentException),
                testing::HasSubstr("[CALLBACK-THREW] THROWS3000: CollectProperties throws "
                                   "corvane::ny::utils::exception (\"Unknown exception\"): "));
}

}  // namespace
