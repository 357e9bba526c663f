// Why a module is not asked although the agent is right: each mistake in a module of its own.
#include <filesystem>

#include "tool/doctor/DoctorTest.h"
#include "tool/doctor/FileChange.h"

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;

namespace {

class ModuleCauses : public DoctorTest {
protected:
    DoctorReport ExamineModule(const char* mistake, std::vector<std::string> arguments = {}) {
        ::SetEnvironmentVariableA("PLANTED_MODULE", mistake);
        arguments.insert(arguments.begin(), {"--module", (PlantedFolder() / "PlantedModule.dll").string()});
        return Examine(std::move(arguments));
    }

    // A copy of the module that may be changed.
    std::filesystem::path CopyModule() {
        const std::filesystem::path copy = Folder() / "Module.dll";
        std::filesystem::copy_file(PlantedFolder() / "PlantedModule.dll", copy);
        return copy;
    }
};

TEST_F(ModuleCauses, AreNoneForAModuleThatIsRight) {
    const DoctorReport report = ExamineModule("", {"--product", "PLANTED_1000"});
    EXPECT_EQ(report.Status(), 0) << report.Everything();
    EXPECT_FALSE(report.HasCause());
    EXPECT_THAT(report.Details("product \"PLANTED_1000\""),
                ElementsAre("enters with mask 0x2000: VsMsgbusServiceProperty", "registers collector"));
    EXPECT_EQ(report.State("enters as the product that is looked for"), "good");
    EXPECT_THAT(report.Details("is told to enter"), ElementsAre("PlantedLoad answers true"));
    EXPECT_THAT(report.Details("is told to leave"), ElementsAre("PlantedUnload answers true"));
    EXPECT_THAT(report.Details("imports from the bridge"),
                ElementsAre("VsKitMsgbusRemoveCollectProperties, VsKitMsgbusSetCollectProperties, VsMsgbusEntry, "
                            "VsMsgbusExit"));
}

TEST_F(ModuleCauses, IdThatDiffersInLetterCaseBetweenEntryAndSet) {
    const DoctorReport report = ExamineModule("id in other case");
    ExpectCause(report, "ID-DIFFERS",
                "The module \"PLANTED_1000\": VsMsgbusEntry is given this id, which differs "
                "from \"Planted_1000\" in the case of letters or in blanks alone");
    EXPECT_EQ(report.Remedy(), "Write the id in one place, and make the narrow and the wide form from it.");
}

TEST_F(ModuleCauses, ProductThatIsAskedInOtherCase) {
    ExpectCause(ExamineModule("", {"--product", "Planted_1000"}), "PRODUCT-SPELT-OTHERWISE",
                "enters as \"PLANTED_1000\", and is looked for as \"Planted_1000\"");
}

TEST_F(ModuleCauses, ProductThatDoesNotEnter) {
    ExpectCause(ExamineModule("", {"--product", "MYAV__1000"}), "PRODUCT-NOT-ENTERED");
}

TEST_F(ModuleCauses, MaskBitMissing) {
    const DoctorReport report = ExamineModule("mask bit missing");
    ExpectCause(report, "MASK-MISSING",
                "its collector is registered, but it entered without VsMsgbusServiceProperty "
                "(mask 0x800)");
    EXPECT_EQ(report.Remedy(), "Add the bit to the mask of VsMsgbusEntry.");
}

TEST_F(ModuleCauses, MaskOfNothing) {
    ExpectCause(ExamineModule("mask of nothing"), "MASK-EMPTY", "it enters with the mask 0");
}

TEST_F(ModuleCauses, SetNeverCalled) {
    const DoctorReport report = ExamineModule("set never called");
    ExpectCause(report, "INTERFACE-MISSING",
                "it entered with VsMsgbusServiceProperty, but has no collector registered");
    EXPECT_THAT(report.Remedy(), HasSubstr("Call VsKitMsgbusSetCollectProperties"));
}

TEST_F(ModuleCauses, IdOfARegistrationMistyped) {
    ExpectCause(ExamineModule("id mistyped"), "NEVER-ENTERED",
                "The module \"PLANTED_10000\": its collector is registered, but no product of "
                "that id has entered");
}

TEST_F(ModuleCauses, MistakesAreFoundWithoutAnAgentAsWell) {
    environment.RemoveAgent();
    DoctorReport report = ExamineModule("mask bit missing");
    EXPECT_EQ(report.State("checking bridge: MASK-MISSING"), "bad") << report.Everything();
    report = ExamineModule("id mistyped");
    EXPECT_EQ(report.State("checking bridge: NEVER-ENTERED"), "bad") << report.Everything();
}

TEST_F(ModuleCauses, AgentThatRefusesTheModule) {
    PlantAgent("refuse register");
    const DoctorReport report = ExamineModule("");
    EXPECT_EQ(report.Problem(), "PRODUCT-REFUSED");
    EXPECT_EQ(report.State("checking bridge: ENTRY-FAILED"), "bad") << report.Everything();
}

TEST_F(ModuleCauses, EntryOnAnotherThreadIsWaitedFor) {
    const DoctorReport report = ExamineModule("entry on another thread");
    EXPECT_EQ(report.Status(), 0) << report.Everything();
    EXPECT_EQ(report.State("product \"PLANTED_1000\""), "good");
}

TEST_F(ModuleCauses, NoEntry) {
    ExpectCause(ExamineModule("no entry", {"--wait", "1"}), "MODULE-DOES-NOT-ENTER",
                "Its function PlantedLoad was called.");
}

TEST_F(ModuleCauses, FunctionThatAnswersFalseIsNotWaitedFor) {
    const DoctorReport report = ExamineModule("false");
    ExpectCause(report, "MODULE-ANSWERS-FALSE", "PlantedLoad answers false, and VsMsgbusEntry was not called");
    EXPECT_EQ(report.State("enters the bridge"), "not reached");
}

TEST_F(ModuleCauses, InterfaceLeftRegisteredIsAFindingOfTheModuleThatIsToldToLeave) {
    ExpectCause(ExamineModule("left registered"), "LEFT-REGISTERED");
}

TEST_F(ModuleCauses, ModuleThatCrashesOrHangsEndsOnlyItsTrial) {
    const DoctorReport crash = ExamineModule("crash");
    ExpectCause(crash, "MODULE-CRASHES", "exception 0xC0000005 (access violation) in PlantedLoad");
    const DoctorReport hang = ExamineModule("hang", {"--wait", "1"});
    ExpectCause(hang, "MODULE-HANGS", "PlantedLoad has not returned");
}

TEST_F(ModuleCauses, ModuleThatCrashesAfterItsEntry) {
    const DoctorReport report = ExamineModule("crash after entry");
    EXPECT_EQ(report.Status(), 1);
    EXPECT_EQ(report.Problem(), "MODULE-CRASHES");
    EXPECT_EQ(report.State("product \"PLANTED_1000\""), "good") << report.Everything();
}

TEST_F(ModuleCauses, ModuleThatRefusesToBeLoaded) {
    ExpectCause(ExamineModule("refused load"), "MODULE-NOT-LOADED", "error 1114");
}

TEST_F(ModuleCauses, ModuleOfAnotherBridge) {
    const std::filesystem::path module = CopyModule();
    ReplaceText(module, "VsMsgbusEntry", "VsMsgbusEnter");
    const DoctorReport report = Examine({"--module", module.string()});
    ExpectCause(report, "MODULE-OF-OTHER-BRIDGE", "imports VsMsgbusEnter from VsMsgbus.dll");
    EXPECT_EQ(report.State("is loaded"), "not reached");
}

TEST_F(ModuleCauses, ModuleFileThatCannotBeLoaded) {
    ExpectCause(Examine({"--module", "C:\\none.dll"}), "MODULE-MISSING");
    const std::filesystem::path module = CopyModule();
    SetMachineOf32Bits(module);
    ExpectCause(Examine({"--module", module.string()}), "MODULE-OF-OTHER-MACHINE");
    SetContent(module, "text");
    ExpectCause(Examine({"--module", module.string()}), "MODULE-IS-NONE");
}

TEST_F(ModuleCauses, FunctionThatTheModuleDoesNotExport) {
    ExpectCause(ExamineModule("", {"--enter", "Begin"}), "MODULE-WITHOUT-FUNCTION", "does not export Begin");
}

TEST_F(ModuleCauses, BridgeBesideTheModuleIsTheOneThatIsLookedAt) {
    const std::filesystem::path module = CopyModule();
    const std::filesystem::path programs = PlantedFolder().parent_path() / "bin";
    std::filesystem::copy_file(PlantedFolder().parent_path() / "checking" / "VsMsgbus.dll", Library("VsMsgbus.dll"));
    const DoctorReport withoutLog = Examine({"--module", module.string()});
    ExpectCause(withoutLog, "LOGLIB-MISSING", "there is none in " + Folder().string());

    std::filesystem::copy_file(programs / "LogLib.dll", Library("LogLib.dll"));
    const DoctorReport whole = Examine({"--module", module.string()});
    EXPECT_EQ(whole.Status(), 0) << whole.Everything();
    EXPECT_THAT(whole.Details("VsMsgbus.dll"),
                ElementsAre(Library("VsMsgbus.dll").string(),
                            HasSubstr("the checking bridge, which is for development alone")));

    ReplaceText(Library("LogLib.dll"), "getLogManager", "getLogManages");
    ExpectCause(Examine({"--module", module.string()}), "LOGLIB-UNUSABLE");
    SetContent(Library("VsMsgbus.dll"), "text");
    ExpectCause(Examine({"--module", module.string()}), "BRIDGE-UNUSABLE");
}

}  // namespace
