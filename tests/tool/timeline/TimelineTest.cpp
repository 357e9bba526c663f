// vsmsgbus timeline, through the program: what it reads, what it refuses, and what it makes of a trace. How the page
// looks and moves is tested in a browser: browser.py.
#include <gmock/gmock.h>
#include <windows.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "tool/RunProgram.h"

using nlohmann::json;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace {

namespace fs = std::filesystem;

class Timeline : public testing::Test {
protected:
    Timeline() { fs::create_directories(folder); }
    ~Timeline() override { fs::remove_all(folder); }
    Timeline(const Timeline&) = delete;
    Timeline& operator=(const Timeline&) = delete;

    std::string Path(const char8_t* name) const {
        const std::u8string path = (folder / name).u8string();
        return {path.begin(), path.end()};
    }
    std::string Trace() const { return Path(u8"trace.json"); }
    std::string Page() const { return Path(u8"page.html"); }

    void Write(const std::string& text) const { std::ofstream(folder / "trace.json", std::ios::binary) << text; }
    std::string ReadPage() const {
        std::ifstream file(folder / "page.html", std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    // The record that the page has in it.
    json RecordInPage() const {
        const std::string page = ReadPage();
        const std::string tag = R"(<script type="application/json" id="record">)";
        const size_t begin = page.find(tag) + tag.size();
        return json::parse(page.substr(begin, page.find("</script>", begin) - begin));
    }

    json Summary(const std::string& text, int status = 0) const {
        Write(text);
        const ProgramRun run = RunVsMsgbus({"timeline", Trace(), "--json", "-o", Page()});
        EXPECT_EQ(run.status, status) << run.errors;
        return json::parse(run.output);
    }
    std::string Refusal(const std::string& text) const {
        Write(text);
        const ProgramRun run = RunVsMsgbus({"timeline", Trace(), "-o", Page()});
        EXPECT_EQ(run.status, 2) << run.output;
        EXPECT_FALSE(fs::exists(folder / "page.html"));
        return run.errors;
    }

    const fs::path folder = fs::temp_directory_path() / ("timeline-" + std::to_string(::GetCurrentProcessId()));
};

std::string Line(const char* phase, const std::string& name, double time, const std::string& arguments = "",
                 int thread = 2) {
    const json event = {{"name", name}, {"ph", phase}, {"ts", time}, {"pid", 1}, {"tid", thread}};
    std::string line = event.dump();
    line.pop_back();
    return line + (arguments.empty() ? "" : ",\"args\":{" + arguments + "}") + "},\n";
}

std::vector<std::string> Names(const json& events) {
    std::vector<std::string> names;
    for (const json& event : events) {
        names.push_back(event["name"]);
    }
    return names;
}

const std::string entry = Line("B", "VsMsgbusEntry", 100, R"("product":"PRODUCT_1000","mask":512)") +
                          Line("E", "VsMsgbusEntry", 350.5, R"("answer":1)");

TEST_F(Timeline, TellsOfSpansWithArgumentsAndAnswer) {
    const json summary = Summary("[\n" + entry + Line("i", "end of the record", 400) + "]\n");
    EXPECT_EQ(summary["events"], 2);
    EXPECT_EQ(summary["duration"], 300);
    EXPECT_EQ(summary["isComplete"], true);
    EXPECT_EQ(summary["brokenLine"], nullptr);
    EXPECT_EQ(summary["threads"], (json{{{"process", "1"}, {"thread", "2"}, {"events", 2}}}));
    EXPECT_EQ(summary["slowest"], (json{{{"name", "VsMsgbusEntry"},
                                         {"kind", "call"},
                                         {"process", "1"},
                                         {"thread", "2"},
                                         {"begin", 0},
                                         {"duration", 250.5},
                                         {"hasEnded", true},
                                         {"arguments", {{"product", "PRODUCT_1000"}, {"mask", 512}}},
                                         {"answers", {{"answer", 1}}}}}));
    EXPECT_THAT(summary["failed"], IsEmpty());
    EXPECT_THAT(summary["findings"], IsEmpty());
}

TEST_F(Timeline, EndsWithOneForAFindingAndSaysWhereItIs) {
    const std::string trace = "[\n" + Line("B", "UpdateMsgbusTaskStatus", 1000, R"("status":50)") +
                              Line("i", "finding", 1500, R"("rule":"TASK-STATUS","product":"PRODUCT_1000")") +
                              Line("E", "UpdateMsgbusTaskStatus", 2000) + "]\n";
    const json finding = Summary(trace, 1)["findings"][0];
    EXPECT_EQ(finding["arguments"]["rule"], "TASK-STATUS");
    EXPECT_EQ(finding["inside"], "UpdateMsgbusTaskStatus");
    EXPECT_THAT(RunVsMsgbus({"timeline", Trace(), "-o", Page()}).output,
                HasSubstr("[TASK-STATUS] PRODUCT_1000 at 500.0 \u00B5s, thread 2, in UpdateMsgbusTaskStatus"));
    EXPECT_THAT(RecordInPage()["messages"]["TASK-STATUS"].get<std::string>(), HasSubstr("a percentage is no status"));
}

TEST_F(Timeline, TakesNoNoteForAFinding) {
    const json summary = Summary("[\n" + Line("i", "finding", 1, R"("rule":"AGENT-ABSENT","product":"")") + "]");
    EXPECT_THAT(summary["findings"], IsEmpty());
    EXPECT_THAT(Names(summary["notes"]), ElementsAre("finding"));
}

TEST_F(Timeline, KnowsWhichAnswersAreFailures) {
    std::string trace = "[\n";
    double time = 0;
    const auto add = [&](const char* name, const char* answer) {
        time += 10;
        trace += Line("B", name, time) + Line("E", name, time + 5, std::string(R"("answer":)") + answer);
    };
    for (const char* const right : {"1", "7"}) {
        add("VsKitMsgbusGetInformation", right);
    }
    add("VsKitMsgbusEncryptData", "0");
    add("SetProperty", "true");
    add("GetLogLevel", "0");
    add("GetProductInfo", "1");
    add("UpdateTaskStatus", "2");
    const std::string allRight = trace;
    EXPECT_THAT(Names(Summary(allRight + "]")["failed"]), IsEmpty());
    add("VsMsgbusEntry", "0");
    add("VsKitMsgbusGetInformation", "0");
    add("VsKitMsgbusEncryptData", "-1");
    add("VsKitMsgbusGetInfoByKeyName", "705");
    add("SetProperty", "false");
    add("ExecuteTask", "3");
    add("UpdateTaskStatus", "1");
    trace += Line("i", "library opened", 500, R"("path":"ny_client.dll","code":126)");
    trace += Line("i", "library opened", 501, R"("path":"ny_client.dll","code":0)");
    trace += Line("i", "the agent refuses", 502, R"("code":12)");
    EXPECT_THAT(Names(Summary(trace + "]")["failed"]),
                ElementsAre("VsMsgbusEntry", "VsKitMsgbusGetInformation", "VsKitMsgbusEncryptData",
                            "VsKitMsgbusGetInfoByKeyName", "SetProperty", "ExecuteTask", "UpdateTaskStatus",
                            "library opened", "the agent refuses"));
}

// As a crash leaves it: the file is blank behind the last line.
TEST_F(Timeline, ReadsATraceWithoutItsEnd) {
    const json summary = Summary("[\n" + entry + Line("B", "ExecuteTask", 500) + Line("B", "SetProperty", 600) +
                                 std::string(300, ' ') + std::string(50, '\0'));
    EXPECT_EQ(summary["isComplete"], false);
    EXPECT_EQ(summary["brokenLine"], nullptr);
    EXPECT_THAT(Names(summary["slowest"]), ElementsAre("VsMsgbusEntry", "ExecuteTask", "SetProperty"));
    EXPECT_EQ(summary["slowest"][1]["hasEnded"], false);
    EXPECT_EQ(summary["slowest"][1]["duration"], 100);
    EXPECT_EQ(RecordInPage()["events"]["open"], (json{1, 2}));
}

TEST_F(Timeline, LeavesOutALastLineThatIsBroken) {
    const std::string last = Line("B", "CollectProperties", 500, R"("product":"a \"quoted\" one")");
    // Behind the last brace alone it would be whole.
    for (size_t size = 1; size < last.size() - 2; size += 7) {
        const json summary = Summary("[\n" + entry + last.substr(0, size) + "      ");
        EXPECT_EQ(summary["events"], 1) << size;
        EXPECT_EQ(summary["brokenLine"], 4) << size;
        EXPECT_EQ(summary["isComplete"], false) << size;
    }
}

// A full file, in which the newest lines stand before the oldest; the crash came while one was written.
TEST_F(Timeline, ReadsAFullTraceThatIsBrokenInItsMiddle) {
    const json summary = Summary("[\n" + Line("B", "OnSetting", 900) + Line("E", "OnSetting", 950) +
                                 R"({"name":"Wri_value","third":"1"}},)"
                                 "\n" +
                                 Line("E", "EnforcePolicy", 200) + entry + Line("i", "end of the record", 1000) + "]");
    EXPECT_EQ(summary["brokenLine"], 4);
    // One whose begin was overwritten began before the record.
    EXPECT_THAT(Names(summary["slowest"]), ElementsAre("VsMsgbusEntry", "EnforcePolicy", "OnSetting"));
    const json record = RecordInPage();
    EXPECT_EQ(record["events"]["early"].size(), 1U);
    EXPECT_EQ(record["events"]["begin"], (json{0, 0, 8000, 9000}));
}

// The remains of two lines that a crash has left may be valid JSON and yet no event.
TEST_F(Timeline, LeavesOutOneEventThatIsNone) {
    const json summary =
        Summary(R"([{"ph":"X","name":"a","ts":1,"dur":1},{"name":"Wri_value"},{"ph":"X","name":"b","ts":2,"dur":1}])");
    EXPECT_EQ(summary["events"], 2);
    EXPECT_EQ(summary["brokenLine"], 1);
    EXPECT_EQ(summary["isComplete"], true);
}

TEST_F(Timeline, TakesSpansWithADurationAndAnObjectAroundTheEvents) {
    const json summary = Summary(R"({"displayTimeUnit":"ms","traceEvents":[
        {"ph":"M","name":"thread_name","pid":1,"tid":7,"args":{"name":"worker"}},
        {"ph":"X","name":"outer","ts":10,"dur":50,"pid":1,"tid":7},
        {"ph":"X","name":"inner","ts":20,"dur":5,"pid":1,"tid":7},
        {"ph":"C","name":"counter","ts":21,"pid":1,"tid":7}]})");
    EXPECT_EQ(summary["threads"][0]["name"], "worker");
    EXPECT_EQ(summary["slowest"][1]["inside"], "outer");
    EXPECT_EQ(summary["duration"], 50);
    EXPECT_EQ(summary["leftOut"], 1);
}

TEST_F(Timeline, ShowsAnEmptyTrace) {
    EXPECT_EQ(Summary("[\n]\n")["events"], 0);
    EXPECT_EQ(Summary("[\n      ")["isComplete"], false);
}

TEST_F(Timeline, RefusesWhatIsNoTraceAndSaysWhere) {
    EXPECT_THAT(Refusal(""), HasSubstr("is no trace: line 1, column 1: the file is empty"));
    EXPECT_THAT(Refusal("hello"), HasSubstr("line 1, column 1: a trace begins with [ or {"));
    EXPECT_THAT(Refusal("{\"a\":1}"), HasSubstr("line 1, column 1: the object has no \"traceEvents\""));
    EXPECT_THAT(Refusal("[1, 2]"), HasSubstr("line 1, column 2: an event is expected, which begins with {"));
    EXPECT_THAT(Refusal("[\n  {\"name\":\"x\"}]"),
                HasSubstr("line 2, column 3: the event has no \"ph\" of one letter"));
    EXPECT_THAT(Refusal("[\n{\"ph\":\"B\",\"name\":\"x\"}]"), HasSubstr("line 2, column 1: the event has no \"ts\""));
    EXPECT_THAT(Refusal("[\n" + entry + "]\nmore"), HasSubstr("line 5, column 1: something stands behind the end"));
    EXPECT_THAT(Refusal("[\n{\"name\":\"x\"},\n{\"name\":\"y\"},\n" + entry + "]"),
                HasSubstr("line 2, column 1: the event has no \"ph\""));
    EXPECT_THAT(Refusal("[\n{\"ph\" \"B\"},\n" + entry + "{\"ph\":},\n" + entry),
                HasSubstr("line 2, column 1: the event is no JSON"));
}

TEST_F(Timeline, RefusesNumbersThatAreNoTimes) {
    for (const char* const time : {"1e300", "-9.1e15", "\"now\"", "null", "99999999999999999999"}) {
        EXPECT_THAT(Refusal(std::string(R"([{"ph":"B","name":"x","tid":1,"ts":)") + time + "}]"),
                    HasSubstr("line 1, column 2: the event's \"ts\" is"));
    }
    EXPECT_THAT(Refusal(R"([{"ph":"B","name":"x","tid":1,"ts":1e999}])"),
                HasSubstr("line 1, column 2: the event is no JSON"));
    EXPECT_THAT(Refusal(R"([{"ph":"X","name":"x","tid":1,"ts":1,"dur":-1}])"),
                HasSubstr("\"dur\" is less than nothing"));
    EXPECT_THAT(Refusal("[" + std::string(100000, '[')), HasSubstr("an event is expected"));
    EXPECT_THAT(Refusal(R"([{"ph":"B","args":)" + std::string(100000, '[')), HasSubstr("nested so deep"));
}

TEST_F(Timeline, KeepsLargeNumbersAsTheyAre) {
    const json summary =
        Summary(R"([{"ph":"X","name":"x","ts":9007199254740000,"dur":1,"pid":1,"tid":18446744073709551615,)"
                R"("args":{"mask":18446744073709551615,"least":-9223372036854775808,"small":-5}}])");
    EXPECT_EQ(summary["threads"][0]["thread"], "18446744073709551615");
    EXPECT_EQ(RecordInPage()["events"]["arguments"][0],
              (json{{"mask", "18446744073709551615"}, {"least", "-9223372036854775808"}, {"small", -5}}));
}

TEST_F(Timeline, LetsNoTextOfTheTraceEndTheScript) {
    const std::string text = "</script><script>alert(1)</script><!-- \u00e9\u4e16\U0001F600";
    Summary("[\n" + Line("B", text, 1, "\"text\":" + json(text).dump()) + "]");
    EXPECT_THAT(ReadPage(), Not(HasSubstr("alert(1)</script>")));
    EXPECT_EQ(RecordInPage()["events"]["names"][0], text);
    EXPECT_EQ(RecordInPage()["events"]["arguments"][0]["text"], text);
}

TEST_F(Timeline, MakesAPageThatNeedsNoOtherFile) {
    Summary("[\n" + entry + "]");
    const std::string page = ReadPage();
    for (const char* const needed :
         {" src=", " href=", "@import", "url(", "http://", "https://", "fetch(", "XMLHttpRequest"}) {
        EXPECT_THAT(page, Not(HasSubstr(needed)));
    }
    EXPECT_THAT(page, HasSubstr("default-src 'none'"));
}

TEST_F(Timeline, TakesFileNamesInAnyScript) {
    Write("[\n" + entry + "]");
    fs::rename(folder / "trace.json", folder / u8"Z\u00fcrich \u4e16.json");
    const ProgramRun run = RunVsMsgbus({"timeline", Path(u8"Z\u00fcrich \u4e16.json"), "-o", Page()});
    EXPECT_EQ(run.status, 0) << run.errors;
    EXPECT_EQ(RecordInPage()["title"], "Z\u00fcrich \u4e16.json");
}

TEST_F(Timeline, RefusesWrongUse) {
    EXPECT_THAT(RunVsMsgbus({"timeline", Path(u8"none.json"), "-o", Page()}).errors,
                HasSubstr("none.json cannot be read"));
    Write("[\n" + entry + "]");
    EXPECT_THAT(RunVsMsgbus({"timeline", Trace()}).errors, HasSubstr("-o FILE.html is missing, or --json"));
    EXPECT_THAT(RunVsMsgbus({"timeline", Trace(), "-o", Trace()}).errors,
                HasSubstr("would take the place of the trace"));
    const ProgramRun run = RunVsMsgbus({"timeline", Trace(), "-o", Path(u8"no/folder.html")});
    EXPECT_EQ(run.status, 2);
    EXPECT_THAT(run.errors, HasSubstr("cannot be written"));
}

TEST_F(Timeline, ShowsExamplesInItsHelp) {
    const ProgramRun run = RunVsMsgbus({"timeline", "--help"});
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.output, HasSubstr("vsmsgbus timeline trace.json --json"));
}

}  // namespace
