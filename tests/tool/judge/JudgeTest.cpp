// Judge finds nothing in the sample module. In a module with one planted mistake, see planted/PlantedModule.cpp, it
// finds that mistake. The short form tries a few mistakes; with JUDGE_WHOLE in the environment all are tried.
#include <cstdlib>
#include <ostream>
#include <set>

#include "tool/play/PlayFixture.h"

using testing::AllOf;
using testing::Contains;
using testing::HasSubstr;
using testing::Not;

namespace {

using JudgeTest = PlayFixture;

bool IsWhole() {
    return std::getenv("JUDGE_WHOLE") != nullptr;
}

struct Mistake {
    const char* name;
    bool isOfShortForm;
    const char* trial;  // where it is found
    const char* rule;   // as what
    const char* step;   // and how it is described: the step, where one failed,
    const char* what;   // and what happened
};

std::ostream& operator<<(std::ostream& out, const Mistake& mistake) {
    return out << mistake.name;
}

constexpr char enters[] = "enters and leaves";
constexpr char isAsked[] = "is asked";
constexpr char cycles[] = "enters and leaves again and again";

constexpr Mistake mistakes[] = {
    {"crash-in-load", false, enters, "CRASH", R"("load" of line )", "crashed: the process crashed: access violation"},
    {"crash-in-ask", true, isAsked, "CRASH", R"("ask" of line )", "crashed: the process crashed: access violation"},
    {"crash-in-task", false, isAsked, "CRASH", R"("run task" of line )", "crashed: the process crashed"},
    {"crash-in-unload", false, enters, "CRASH", R"("unload" of line )", "crashed: the process crashed"},
    {"crash-in-sink", false, "agent absent", "CRASH", R"("load" of line )", "crashed: the process crashed"},
    {"crash-when-refused", false, "fails as it is asked: ny_property_bag_add_property", "CRASH", "",
     "crashed: the process crashed: access violation"},
    {"one-task-only", true, "eight threads", "CRASH", "", "crashed: the process crashed: access violation"},
    {"late-remove", false, enters, "CRASH", R"("expect nothing left" of line )", "crashed: "},
    {"abort-in-ask", false, isAsked, "CRASH", "", "the process ended with status 3, as after abort()"},
    {"exit-in-unload", false, enters, "CRASH", R"("unload" of line )", "crashed: the process ended with status 0"},
    {"hang-in-load", false, enters, "HANG", R"("load" of line )", "hung: nothing came back"},
    {"hang-in-ask", true, isAsked, "HANG", R"("ask" of line )", "hung: waited 5000 ms for the answer: thread "},
    {"hang-in-update", false, isAsked, "HANG", R"("update" of line )", "hung: waited 5000 ms for the answer: thread "},
    {"hang-in-unload", false, enters, "HANG", R"("unload" of line )", "hung: nothing came back"},
    {"task-without-end", false, isAsked, "HANG", "", R"(has ended: it was reported 2 (goes on))"},
    {"throw-in-load", false, enters, "EXPECTATION", "", "PlantedLoad of PlantedModule.dll has thrown"},
    {"throw-in-ask", false, isAsked, "CALLBACK-THREW", "",
     R"(CollectProperties throws std::runtime_error ("planted"))"},
    {"answers-false", false, enters, "EXPECTATION", "", "PlantedUnload was to answer true, and has answered false"},
    {"refuses-without-agent", true, "agent absent", "EXPECTATION", "",
     "PlantedLoad was to answer true, and has answered false"},
    {"slow", false, isAsked, "CALLBACK-SLOW", "", "CollectProperties took 2"},
    {"null-property", false, isAsked, "PROPERTY-NULL", "", "SetProperty is given null for the value of Version"},
    {"remove-inside", false, isAsked, "REMOVE-INSIDE", "", "VsKitMsgbusRemoveCollectProperties is called inside"},
    {"lock-held", false, "unloaded while asked for properties", "REMOVE-GAVE-UP", "",
     "has given up waiting, with thread "},
    {"bag-kept", false, isAsked, "LENT-KEPT", "",
     "EnumeratePolicies is called on the object that EnforcePolicy was given"},
    {"percentage", false, isAsked, "TASK-ANSWER", "", "ExecuteTask answers 50"},
    {"state-percentage", false, isAsked, "TASK-STATE-ANSWER", "", "UpdateTaskStatus answers 50"},
    {"other-id", false, enters, "ID-DIFFERS", "", R"(which differs from "planted_1000" in the case of letters)"},
    {"set-twice", false, enters, "SET-TWICE", "", "its collector is registered a second time"},
    {"interface-missing", false, isAsked, "INTERFACE-MISSING", "", "it entered with VsMsgbusServiceUpdate, but has no"},
    {"mask-missing", true, isAsked, "MASK-MISSING", "", "its task enforcer is registered, but it entered without"},
    {"no-sink", false, enters, "ENTRY-NO-SINK", "", "it enters without a log sink"},
    {"enters-in-dllmain", false, enters, "LOADER-LOCK", "", "VsMsgbusEntry is called under the system's loader lock"},
    {"no-exit", false, enters, "LEFT-BEHIND", "", "PLANTED_1000 is registered for properties"},
    {"other-instance", false, enters, "EXIT-OTHER-INSTANCE", "", "VsMsgbusExit is given another instance"},
    {"no-remove", true, enters, "LEFT-REGISTERED", "", "is still registered when the process ends"},
    {"removes-twice", false, enters, "REMOVE-UNKNOWN", "",
     "VsKitMsgbusRemoveTaskEnforcer is called, but no task enforcer"},
    {"memory-leak", true, cycles, "LEAK", "", "the process has 1638400 bytes in its heaps more than before"},
    {"handle-leak", true, cycles, "LEAK", "", "the process has 100 handles more than before"},
    {"thread-leak", false, cycles, "LEAK", "", "the process has 100 threads more than before"},
};

std::vector<Mistake> MistakesToMake() {
    std::vector<Mistake> some;
    for (const Mistake& mistake : mistakes) {
        if (mistake.isOfShortForm || IsWhole()) {
            some.push_back(mistake);
        }
    }
    return some;
}

class PlantedMistake : public PlayFixture, public testing::WithParamInterface<Mistake> {};

TEST_P(PlantedMistake, IsFoundForWhatItIs) {
    const Mistake& mistake = GetParam();
    Plant(mistake.name);
    const ProgramRun run = RunVsMsgbus({"judge", "--json", "--cycles", "100", "--only", mistake.trial, Planted()});
    EXPECT_EQ(run.status, 1) << run.errors;
    std::vector<std::string> found;
    const auto result = Result(run);
    for (const auto& trial : result.at("trials")) {
        for (const auto& finding : trial.at("findings")) {
            found.push_back(trial.at("name").get<std::string>() + ": [" + finding.at("rule").get<std::string>() + "] " +
                            finding.at("what").get<std::string>());
        }
    }
    EXPECT_THAT(found, Contains(AllOf(testing::StartsWith(std::string(mistake.trial) + ": [" + mistake.rule + "]"),
                                      HasSubstr(mistake.step), HasSubstr(mistake.what))));
}

INSTANTIATE_TEST_SUITE_P(Judge, PlantedMistake, testing::ValuesIn(MistakesToMake()), [](const auto& instance) {
    std::string name = instance.param.name;
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
});

// The module that mistakes are planted in is right when none is planted.
TEST_F(JudgeTest, FindsNothingInModulesThatAreRight) {
    std::vector<std::string> words{"judge", "--json", Sample()};
    if (!IsWhole()) {
        words.insert(words.end(), {"--short", "--cycles", "100"});
    }
    const ProgramRun sample = RunVsMsgbus(words);
    EXPECT_EQ(sample.status, 0) << sample.output << sample.errors;
    EXPECT_EQ(Result(sample).at("findings"), 0);
    EXPECT_GE(Result(sample).at("trials").size(), 37U);
    if (IsWhole()) {
        EXPECT_EQ(RunVsMsgbus({"judge", Planted()}).status, 0);
    }
}

TEST_F(JudgeTest, TellsWhatItTriedAndHowToTryItAgain) {
    Plant("no-remove");
    const auto junit = folder / "judge.xml";
    const auto page = folder / "judge.html";
    const auto stories = folder / "stories";
    const ProgramRun run = RunVsMsgbus({"judge", "--only", "agent absent", "--only", "agent late", "--junit",
                                        Text(junit), "--html", Text(page), "--stories", Text(stories), Planted()});
    EXPECT_EQ(run.status, 1) << run.errors;
    EXPECT_THAT(run.output,
                AllOf(HasSubstr("agent absent"), HasSubstr("[LEFT-REGISTERED] PLANTED_1000: its "),
                      HasSubstr("again: vsmsgbus judge --only \"agent absent\" "),
                      HasSubstr("[LEFT-REGISTERED] as in \"agent absent\""), HasSubstr("0 of 2 passed, 2 findings")));
    EXPECT_THAT(Read(junit), AllOf(HasSubstr("tests=\"2\" failures=\"2\""), HasSubstr("name=\"agent late\""),
                                   HasSubstr("<failure type=\"LEFT-REGISTERED\"")));
    EXPECT_THAT(Read(page), AllOf(HasSubstr("<!DOCTYPE html>"), HasSubstr("agent absent"),
                                  HasSubstr("<b>LEFT-REGISTERED</b>"), HasSubstr("Again: <code>")));
    // Play says the same of that story.
    const ProgramRun again = RunVsMsgbus({"play", "--checking", Text(stories / "agent absent.json"), Planted()});
    EXPECT_EQ(again.status, 0) << again.output;
    EXPECT_THAT(again.errors, HasSubstr("[LEFT-REGISTERED]"));
}

TEST_F(JudgeTest, TriesNothingElseWhereNoStoryCanBegin) {
    Plant("crash-in-load");
    const ProgramRun run = RunVsMsgbus({"judge", "--short", Planted()});
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.output, AllOf(HasSubstr("0 of 1 passed"), HasSubstr("Nothing else was tried")));
}

TEST_F(JudgeTest, ListsItsStories) {
    const ProgramRun run = RunVsMsgbus({"judge", "--list", Sample()});
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(
        run.output,
        AllOf(HasSubstr("upgraded while asked for policies"), HasSubstr("refused: ny_updater_register_callbacks"),
              HasSubstr("fails as it is asked: ny_policy_get"), HasSubstr("bridge out of memory as it enters")));
}

TEST_F(JudgeTest, RefusesWrongUse) {
    EXPECT_EQ(RunVsMsgbus({"judge"}).status, 2);
    EXPECT_EQ(RunVsMsgbus({"judge", "nothing.dll"}).status, 2);
    const ProgramRun run = RunVsMsgbus({"judge", "--only", "no such story", Sample()});
    EXPECT_EQ(run.status, 2);
    EXPECT_THAT(run.errors, HasSubstr("no trial of that name"));
}

}  // namespace
