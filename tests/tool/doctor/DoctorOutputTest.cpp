// The doctor's output for people, and its use.
#include <filesystem>
#include <set>

#include "support/LogFile.h"
#include "tool/doctor/DoctorTest.h"
#include "tool/doctor/FileChange.h"
#include "tool/doctor/Problems.h"

using testing::HasSubstr;
using testing::StartsWith;

namespace {

class DoctorOutput : public DoctorTest {
protected:
    ProgramRun Print() { return RunVsMsgbus({"doctor", "--local-machine", environment.LocalMachine()}); }
};

TEST_F(DoctorOutput, BeginsWithTheFirstCauseAndItsRemedyAndListsAllChecks) {
    environment.RemoveAgent();
    simulator::AgentInstaller::DeleteAgentKey();
    const ProgramRun run = Print();
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.output, StartsWith("First cause [AGENT-ABSENT]"));
    EXPECT_THAT(run.output, HasSubstr("What to do"));
    EXPECT_THAT(run.output, HasSubstr("\u2717 the agent's key, 64-bit view"));
    EXPECT_THAT(run.output, HasSubstr("- the agent's version: not reached"));
    EXPECT_THAT(run.output, HasSubstr("\u2713 VsMsgbus.dll"));
    EXPECT_THAT(run.output, HasSubstr("\u2717 RuntimeSdkPath64, 32-bit view"));
}

TEST_F(DoctorOutput, SaysSoWhenNothingIsFound) {
    const ProgramRun run = Print();
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.output, StartsWith("Nothing is found that keeps a module from being asked."));
}

TEST_F(DoctorOutput, CallsAMistakeNoCauseThatTheAgentAsksAllTheSame) {
    ::SetEnvironmentVariableA("PLANTED_MODULE", "no sink");
    const ProgramRun run = RunVsMsgbus({"doctor", "--local-machine", environment.LocalMachine(), "--module",
                                        (PlantedFolder() / "PlantedModule.dll").string()});
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.output, StartsWith("Nothing is found that keeps the module from being asked, but it makes a "
                                       "mistake [ENTRY-NO-SINK]"));
}

TEST_F(DoctorOutput, ChangesNothingOnTheMachine) {
    const auto filesOf = [](const std::filesystem::path& folder) {
        std::set<std::string> files;
        for (const auto& entry : std::filesystem::directory_iterator(folder)) {
            files.insert(entry.path().string());
        }
        return files;
    };
    // A folder for temporary files that nobody else uses meanwhile.
    const LogFile temporary;
    const std::string usual = std::filesystem::temp_directory_path().string();
    ::SetEnvironmentVariableW(L"TMP", temporary.folder.c_str());
    const auto before = filesOf(Folder());
    EXPECT_EQ(Examine({"--module", (PlantedFolder() / "PlantedModule.dll").string()}).Status(), 0);
    ::SetEnvironmentVariableA("TMP", usual.c_str());
    EXPECT_EQ(filesOf(Folder()), before);
    EXPECT_THAT(filesOf(temporary.folder), testing::IsEmpty());
}

TEST_F(DoctorOutput, WrongUseIsAnsweredWithTwo) {
    EXPECT_EQ(RunVsMsgbus({"doctor", "--wait", "never"}).status, 2);
    EXPECT_EQ(RunVsMsgbus({"doctor", "--enter", "Load"}).status, 2);
    const ProgramRun run = RunVsMsgbus({"doctor", "--local-machine", "Software\\no such key"});
    EXPECT_EQ(run.status, 2);
    EXPECT_THAT(run.errors, HasSubstr("HKEY_CURRENT_USER\\Software\\no such key cannot be used"));
}

TEST_F(DoctorOutput, HelpGivesExamplesAndHidesTheTrials) {
    EXPECT_THAT(RunVsMsgbus({"doctor", "--help"}).output, HasSubstr("vsmsgbus doctor --module"));
    EXPECT_THAT(RunVsMsgbus({"--help"}).output, testing::Not(HasSubstr("doctor-agent")));
}

TEST(Problems, StandOnTheDoctorsPageByTheirNames) {
    const std::string page = ContentOf(DOCTOR_PAGE);
    for (const tool::doctor::ProblemText& text : tool::doctor::AllProblems()) {
        if (text.problem < tool::doctor::Problem::ModuleFinding) {
            EXPECT_THAT(page, HasSubstr(std::string("`") + text.name + "`"));
        }
    }
}

TEST(Problems, HaveEachATextWhosePlacesCanBeFilled) {
    const std::vector<std::string> places = {"one", "two", "three", "four"};
    std::set<tool::doctor::Problem> seen;
    for (const tool::doctor::ProblemText& text : tool::doctor::AllProblems()) {
        EXPECT_TRUE(seen.insert(text.problem).second) << text.name;
        EXPECT_NO_THROW(tool::doctor::Filled(text.cause, places)) << text.name;
        EXPECT_NO_THROW(tool::doctor::Filled(text.remedy, places)) << text.name;
    }
    EXPECT_EQ(seen.size(), static_cast<size_t>(tool::doctor::Problem::ModuleMistake) + 1);
}

}  // namespace
