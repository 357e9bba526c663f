// Playing stories, and the output of it.
#include <set>
#include <thread>

#include "tool/play/PlayFixture.h"

using testing::AllOf;
using testing::ContainsRegex;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

using PlayTest = PlayFixture;
using Json = nlohmann::json;

constexpr char enter[] = R"({"do": "install"}, {"do": "load"},
)";
constexpr char leave[] = R"({"do": "unload"}, {"do": "expect nothing left"}
)";

std::string Entered(const std::string& steps) {
    return enter + steps + ",\n" + leave;
}

void CollectVerbs(const Json& steps, std::set<std::string>& verbs) {
    for (const Json& step : steps) {
        verbs.insert(step.at("do").get<std::string>());
        CollectVerbs(step.value("steps", Json::array()), verbs);
    }
}

TEST_F(PlayTest, TellsTheDemosStory) {
    const ProgramRun run = RunVsMsgbus({"play", "--checking", DEMO_STORY, Sample()});
    EXPECT_EQ(run.status, 0) << run.output << run.errors;
    EXPECT_THAT(run.output, HasSubstr("passed: 35 of 35 steps passed"));
}

// This, too: each verb of the table is played by one of the two stories.
TEST_F(PlayTest, HasEveryStepOfTheTable) {
    const ProgramRun run = RunVsMsgbus({"play", "--seed", "1", ALL_STEPS, Sample()});
    EXPECT_EQ(run.status, 0) << run.output << run.errors;
    EXPECT_THAT(run.output, ContainsRegex("allocations of the bridge's that have failed since the story began: \\d"));
    std::set<std::string> played{"expect finding"};  // see below
    for (const char* const file : {DEMO_STORY, ALL_STEPS}) {
        CollectVerbs(Json::parse(Read(file)).at("steps"), played);
    }
    const Json schema = Json::parse(Read(SCHEMA_FILE));
    const auto known =
        schema.at("definitions").at("step").at("properties").at("do").at("enum").get<std::set<std::string>>();
    EXPECT_EQ(played, known);
}

TEST_F(PlayTest, HasTheSchemaOfItsTable) {
    const ProgramRun run = RunVsMsgbus({"play", "--schema"});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(Json::parse(run.output), Json::parse(Read(SCHEMA_FILE)))
        << "write it anew: vsmsgbus play --schema > tool/play/story.schema.json";
}

TEST_F(PlayTest, TellsWhoCalledWhomOnWhichThreadAndWhatCameBack) {
    const ProgramRun run = Play(Entered(R"({"do": "ask", "note": "the first question"})"), Sample());
    EXPECT_EQ(run.status, 0) << run.output << run.errors;
    EXPECT_THAT(run.output,
                AllOf(HasSubstr("  3. ask (line 3)"), HasSubstr("the first question"),
                      HasSubstr("agent: asks SAMPLE__1000 for its properties"),
                      ContainsRegex("player: calls SampleModuleLoad of SampleModule.dll on thread \\d+"),
                      ContainsRegex("bridge: calls ny_property_bag_add_property on thread \\d+: answer 0, 8 times"),
                      ContainsRegex("bridge: answers the agent 0 on thread \\d+")));
}

TEST_F(PlayTest, ShowsWhatWasThereInsteadOfWhatWasExpected) {
    const ProgramRun run = Play(Entered(R"({"do": "ask", "properties": {"System": {"OsName": "MS-DOS"}}})"), Sample());
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.output, ContainsRegex("failed: System: OsName was to be \"MS-DOS\", and is \"Windows"));
    EXPECT_THAT(run.output, HasSubstr("failed: 2 of 5 steps passed"));
    const std::pair<const char*, const char*> others[] = {
        {R"({"do": "ask", "properties": {"No": {"Such": "a"}}})", "there is no property No: Such; given were System"},
        {R"({"do": "ask", "answer": 705})", "the answer was to be 705, and is 0"},
        {R"({"do": "ask", "count": 9})", "the number of properties was to be 9, and is 8"},
        {R"({"do": "ask", "atLeast": 5000})", "it was to take 5000 ms at least, and has taken"},
        {R"({"do": "get value", "name": "Version", "value": {"matches": "9.*"}})",
         "the value was to be like \"9.*\", and is \"1.0.0\""},
        {R"({"do": "expect registered", "services": ["tasks"]})",
         "was to be registered for tasks, and is for properties, policies, tasks, updates"},
        {R"({"do": "expect nothing left", "within": 100})", "SAMPLE__1000 is registered for properties"},
        {R"({"do": "expect calls", "function": "ny_client_handler_start", "count": 2})",
         "the number of calls of ny_client_handler_start was to be 2, and is 1"},
        {R"({"do": "call", "function": "SampleModuleEnforceAgain", "answer": false})",
         "SampleModuleEnforceAgain was to answer false, and has answered true"},
        {R"({"do": "start task", "task": "none"})", "the agent has no task none"},
        {R"({"do": "block", "function": "ny_nonsense"})", "the simulated agent has no function ny_nonsense"},
    };
    for (const auto& [step, failure] : others) {
        const ProgramRun other = Play(Entered(step), Sample(), {"--json"});
        EXPECT_EQ(other.status, 1) << step;
        EXPECT_THAT(Result(other).at("runs").at(0).at("steps").at(2).at("failure").get<std::string>(),
                    HasSubstr(failure));
    }
}

TEST_F(PlayTest, LetsTheAgentBeUpgradedWhileItAsks) {
    const ProgramRun run = Play(Entered(R"({"do": "block", "function": "ny_property_bag_add_property"},
{"do": "ask", "as": "early", "count": 8}, {"do": "wait until blocked", "function": "ny_property_bag_add_property"},
{"do": "upgrade", "version": "5.8.0"}, {"do": "unblock", "function": "ny_property_bag_add_property"},
{"do": "await", "request": "early"}, {"do": "wait until registered", "service": "properties"}, {"do": "ask"})"),
                                Sample(), {"--json"});
    EXPECT_EQ(run.status, 0) << run.output << run.errors;
}

TEST_F(PlayTest, SaysWhenACallThatWasToFailWasNotMade) {
    const ProgramRun run = Play(
        Entered(R"({"do": "fail", "function": "ny_policy_get"}, {"do": "ask"}, {"do": "clear faults"})"), Sample());
    EXPECT_EQ(run.status, 0) << run.output << run.errors;
    EXPECT_THAT(run.output, HasSubstr("player: no call of ny_policy_get has failed"));
}

// --- Crashes, hangs, and what the checking bridge finds

TEST_F(PlayTest, NamesTheStepOfACrash) {
    Plant("crash-in-ask");
    const ProgramRun run = Play(Entered(R"({"do": "ask"})"), Planted());
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.output,
                ContainsRegex("crashed: the process crashed: access violation, 0xC0000005 in PlantedModule.dll at\\s+"
                              "offset 0x\\w+, on thread \\d+"));
    EXPECT_THAT(run.output, HasSubstr("crashed: 2 of 5 steps passed"));
}

TEST_F(PlayTest, NamesTheStepInWhichTheProcessEnds) {
    Plant("exit-in-unload");
    EXPECT_THAT(Play(Entered(R"({"do": "ask"})"), Planted()).output,
                HasSubstr("crashed: the process ended with status 0"));
    Plant("abort-in-ask");
    EXPECT_THAT(Play(Entered(R"({"do": "ask"})"), Planted()).output,
                HasSubstr("crashed: the process ended with status 3, as after abort()"));
}

TEST_F(PlayTest, NamesTheStepThatHangs) {
    Plant("hang-in-ask");
    const ProgramRun asked = Play(Entered(R"({"do": "ask", "within": 300})"), Planted());
    EXPECT_EQ(asked.status, 1);
    EXPECT_THAT(asked.output, ContainsRegex("hung: waited 300 ms for the answer: thread \\d+ is still inside"));
    Plant("hang-in-load");
    const ProgramRun loaded = Play(R"({"do": "load", "within": 300})", Planted());
    EXPECT_EQ(loaded.status, 1);
    EXPECT_THAT(loaded.output, HasSubstr("hung: nothing came back within 5300 ms; the process was ended"));
}

TEST_F(PlayTest, HasTheCheckingBridgeSayWhatIsWrong) {
    const std::string steps = Entered(R"({"do": "expect no findings"})");
    EXPECT_EQ(Play(steps, Planted()).status, 0);
    Plant("no-sink");
    const ProgramRun run = Play(steps, Planted());
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.output, HasSubstr("there were to be no findings, and there are 1"));
    EXPECT_THAT(run.errors, HasSubstr("VsMsgbus check [ENTRY-NO-SINK] PLANTED_1000"));
    EXPECT_EQ(Play(Entered(R"({"do": "expect finding", "rule": "ENTRY-NO-SINK"})"), Planted()).status, 0);
    const ProgramRun other =
        Play(Entered(R"({"do": "expect finding", "rule": "SET-TWICE", "within": 100})"), Planted());
    EXPECT_EQ(other.status, 1);
    EXPECT_THAT(other.output, HasSubstr("there was to be a finding SET-TWICE, and there is none"));
}

// A finding at the module's unloading comes behind the step "expect no findings".
TEST_F(PlayTest, WantsSilenceUntilTheProcessHasEnded) {
    Plant("no-remove");
    const ProgramRun run = Play(enter + std::string(R"({"do": "expect no findings"}, {"do": "unload"})"), Planted());
    EXPECT_EQ(run.status, 1) << run.output;
    EXPECT_THAT(run.output, HasSubstr("until the process has ended"));
}

TEST_F(PlayTest, RecordsWhatHappens) {
    const auto record = folder / "record.json";
    EXPECT_EQ(Play(Entered(R"({"do": "ask"})"), Sample(), {"--trace", Text(record)}).status, 0);
    std::set<std::string> names;
    for (const auto& event : Json::parse(Read(record))) {
        names.insert(event.at("name").get<std::string>());
    }
    EXPECT_THAT(names, testing::IsSupersetOf({"VsMsgbusEntry", "VsMsgbusExit"}));
}

// --- How often, and in which order

std::string Order(const Json& run) {
    std::string order;
    for (const Json& step : run.at("steps")) {
        order += std::to_string(step.at("line").get<int>());
    }
    return order;
}

TEST_F(PlayTest, PlaysInTheOrderThatTheSeedDecides) {
    std::string steps = R"({"do": "in any order", "steps": [)";
    for (int i = 0; i < 7; ++i) {
        steps += std::string(i == 0 ? "" : ",") + "\n{\"do\": \"forget calls\"}";
    }
    steps += "]}";
    const auto unseeded = Result(Play(steps, Sample(), {"--json"}));
    EXPECT_EQ(Order(unseeded.at("runs").at(0)), "3456789");
    const auto seeded = Result(Play(steps, Sample(), {"--json", "--repeat", "3", "--seed", "7"}));
    ASSERT_EQ(seeded.at("runs").size(), 3U);
    EXPECT_EQ(seeded.at("runs").at(2).at("seed"), 9);
    std::set<std::string> orders;
    for (const auto& run : seeded.at("runs")) {
        orders.insert(Order(run));
    }
    EXPECT_EQ(orders.size(), 3U);
    const auto again = Result(Play(steps, Sample(), {"--json", "--seed", "9"}));
    EXPECT_EQ(Order(again.at("runs").at(0)), Order(seeded.at("runs").at(2)));
}

TEST_F(PlayTest, PlaysAgainWhenTheModulesFileHasChanged) {
    const auto module = folder / u8"Модуль é.dll";
    std::filesystem::copy_file(programs / "SampleModule.dll", module);
    const auto result = folder / "result.xml";
    HANDLE const changes = ::FindFirstChangeNotificationW(folder.c_str(), FALSE,
                                                          FILE_NOTIFY_CHANGE_FILE_NAME | FILE_NOTIFY_CHANGE_LAST_WRITE);
    ProgramRun run;
    std::thread playing([&] {
        run = Play(Entered(R"({"do": "ask"})"), Text(module),
                   {"--watch", "--plays", "2", "--brief", "--junit", Text(result)});
    });
    constexpr DWORD limit = 30000;
    while (!std::filesystem::exists(result) && ::WaitForSingleObject(changes, limit) == WAIT_OBJECT_0) {
        ::FindNextChangeNotification(changes);
    }
    ::FindCloseChangeNotification(changes);
    std::filesystem::last_write_time(module, std::filesystem::last_write_time(module) + std::chrono::hours(1));
    playing.join();
    EXPECT_EQ(run.status, 0) << run.output << run.errors;
    EXPECT_THAT(run.output, AllOf(HasSubstr("waits until the story or a module changes\r\nstory\r\n"),
                                  EndsWith("passed: 5 of 5 steps passed\r\n")));
}

TEST_F(PlayTest, HostsSeveralModules) {
    const std::string steps = R"({"do": "install"}, {"do": "load"},
{"do": "ask", "product": "SAMPLE__1000"}, {"do": "ask", "product": "PLANTED_1000", "properties": {"General": {"Version": "1.0"}}},
{"do": "unload", "module": "SampleModule.dll"}, {"do": "ask"}, {"do": "unload", "module": "PlantedModule.dll"}, {"do": "expect nothing left"})";
    const ProgramRun run = Play(steps, Sample(), {Planted()});
    EXPECT_EQ(run.status, 0) << run.output << run.errors;
}

TEST_F(PlayTest, WritesTheResultForMachines) {
    const auto file = folder / "result.xml";
    Plant("crash-in-unload");
    const ProgramRun run = Play(Entered(R"({"do": "ask"})"), Planted(), {"--json", "--junit", Text(file)});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(Result(run).at("passed"), false);
    EXPECT_EQ(Result(run).at("runs").at(0).at("outcome"), "crashed");
    const std::string xml = Read(file);
    EXPECT_THAT(xml, AllOf(HasSubstr(R"(tests="6" failures="1" skipped="1")"), HasSubstr("name=\"4 unload (line 4)\""),
                           HasSubstr("<failure type=\"crashed\" message=\"")));
}

// --- Wrong stories and wrong use

TEST_F(PlayTest, RefusesAWrongStoryWithItsLine) {
    const std::pair<const char*, const char*> wrong[] = {
        {"{\"steps\": [\n{\"do\": \"install\",\n \"versoin\": \"5\"}]}", ":3: \"install\" has no member \"versoin\""},
        {"{\"steps\": [\n{\"do\": \"instal\"}]}", ":2: there is no step \"instal\"; there are install,"},
        {"{\"steps\": [\n\n{\"version\": 1}]}", ":3: a step is an object with the member \"do\""},
        {"{\"steps\": [\n{\"do\": \"update\",\n\"number\": -1}]}",
         ":3: \"number\" is a whole number, 0 or more, not -1"},
        {"{\"steps\": [\n{\"do\": \"fail\"}]}", ":2: \"fail\" needs the member \"function\""},
        {"{\"steps\": [\n{\"do\": \"ask\", \"as\": 3}]}", ":2: \"as\" is a text, not 3"},
        {"{\"steps\": [{\"do\": \"get value\", \"name\": \"a\",\n\"value\": {\"matches\": \"(\"}}]}",
         ":2: \"value\": this is no regular expression"},
        {"{\"steps\": [\n{\"do\": \"wait until registered\", \"service\": \"policy\"}]}",
         ":2: \"service\" is one of \"properties\", \"policies\", \"tasks\", \"updates\", not \"policy\""},
        {"{\"steps\": [\n{\"do\": \"set tasks\", \"tasks\": \"none.json\"}]}", "none.json cannot be read"},
        {"{\"steps\": [\n{\"do\": \"repeat\", \"times\": 2, \"steps\": [\n{\"do\": \"x\"}]}]}",
         ":3: there is no step \"x\""},
        {"{\"steps\": [],\n\"steps\": []}", ":2: \"steps\" comes twice"},
        {"{\"steps\": [\n{\"do\": \"remove\",}\n]}", ":2: this is no JSON"},
        {"{\"stepps\": []}", ":1: a story has no member \"stepps\""},
        {"{}", ":1: a story needs the member \"steps\""},
        {"[]", ":1: a story is an object"},
    };
    for (const auto& [story, reason] : wrong) {
        const ProgramRun run = RunVsMsgbus({"play", Write(story), Sample()});
        EXPECT_EQ(run.status, 2) << story;
        EXPECT_THAT(run.errors, AllOf(HasSubstr("story.json"), HasSubstr(reason))) << story;
        EXPECT_THAT(run.output, IsEmpty());
    }
}

TEST_F(PlayTest, RefusesWrongUse) {
    const std::string story = Write(R"({"steps": []})");
    EXPECT_EQ(RunVsMsgbus({"play"}).status, 2);
    EXPECT_EQ(RunVsMsgbus({"play", story}).status, 2);
    EXPECT_EQ(RunVsMsgbus({"play", "no-story.json", Sample()}).status, 2);
    const ProgramRun run = RunVsMsgbus({"play", story, "nothing.dll"});
    EXPECT_EQ(run.status, 2);
    EXPECT_THAT(run.errors, HasSubstr("there is no file nothing.dll"));
    EXPECT_EQ(RunVsMsgbus({"play", story, Sample()}).status, 0);
}

TEST_F(PlayTest, SaysWhyAFileIsNoModule) {
    const std::string noModule = Write("no library", "text.dll");
    const ProgramRun run = Play(R"({"do": "load"})", noModule);
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.output, HasSubstr("cannot be loaded: error 193"));
}

}  // namespace
