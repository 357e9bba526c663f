// The agent's key in the view of the registry where the bridge does not look. Only the machine's own registry has two
// views.
#include "support/RealRegistry.h"
#include "tool/doctor/DoctorTest.h"

using testing::ElementsAre;
using testing::HasSubstr;

namespace {

class RegistryViews : public testing::Test {
protected:
    void SetUp() override {
        if (!RealRegistry::IsExpendable()) {
            GTEST_SKIP() << "not on a machine that may have an agent";
        }
    }

    static DoctorReport Examine() { return DoctorReport(RunVsMsgbus({"doctor", "--json"})); }
    static void Write(const char* key, const char* name, const char* text, REGSAM view) {
        simulator::RegistryKey(HKEY_LOCAL_MACHINE, key, KEY_SET_VALUE | view).WriteText(name, text);
    }

    RealRegistry registry;
};

TEST_F(RegistryViews, VersionInTheView32AloneIsToldWithTheCause) {
    Write("Software\\Corvane\\Agent", "MsgbusVersion", "5.7.0", KEY_WOW64_32KEY);
    const DoctorReport report = Examine();
    EXPECT_EQ(report.Problem(), "AGENT-ABSENT");
    EXPECT_THAT(report.Details("the agent's key, 64-bit view"),
                ElementsAre("the 32-bit view has it, with MsgbusVersion \"5.7.0\"; the bridge reads the 64-bit view"));
}

TEST_F(RegistryViews, PathInTheView64AloneIsToldWithTheCause) {
    Write("Software\\Corvane\\Agent", "MsgbusVersion", "5.7.0", KEY_WOW64_64KEY);
    Write("Software\\Corvane\\Agent\\Applications\\RDXAGENT3000", "RuntimeSdkPath64", "C:\\Agent", KEY_WOW64_64KEY);
    const DoctorReport report = Examine();
    EXPECT_EQ(report.Problem(), "PATH-ABSENT");
    EXPECT_THAT(report.Details("RuntimeSdkPath64, 32-bit view"),
                ElementsAre(HasSubstr("the 64-bit view has it, \"C:\\Agent\", REG_SZ, 9 bytes; the bridge reads the "
                                      "32-bit view")));
}

}  // namespace
