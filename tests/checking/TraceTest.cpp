// The record of a process: spans and instants in a file that other tools read.
#include <fstream>
#include <map>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "VsMsgbus.h"
#include "checking/CheckedTest.h"
#include "checking/OwnProcess.h"
#include "checking/trace/TraceEvent.h"
#include "checking/trace/TraceFile.h"
#include "support/OnPurpose.h"

namespace {

using checking::TraceArguments;
using checking::TraceFile;
using checking::TraceLine;
using checking::TracePhase;
using nlohmann::json;

class RecordFile : public testing::Test {
protected:
    static std::string Line(int number) {
        return TraceLine(TracePhase::Instant, "event", number * 1000, 1, 2, TraceArguments());
    }
    json Read() const { return json::parse(file.Text()); }
    std::vector<int> Times() const {
        std::vector<int> times;
        for (const json& event : Read()) {
            times.push_back(event["ts"].get<int>());
        }
        std::sort(times.begin(), times.end());
        return times;
    }

    LogFile file;
    const std::string last = R"({"name":"end","ph":"i","ts":1000000,"pid":1,"tid":2,"s":"t"})";
};

TEST_F(RecordFile, IsAnArrayOfItsLinesWhenItIsFinished) {
    TraceFile record(file.path.c_str(), 65536);
    record.Add(Line(1));
    record.Add(Line(2));
    record.Finish(last);
    EXPECT_EQ(Times(), (std::vector<int>{1, 2, 1000000}));
    EXPECT_LT(file.Text().size(), 400U);
}

// As after a crash. Viewers read an array without its end.
TEST_F(RecordFile, HasEachLineAtOnce) {
    TraceFile record(file.path.c_str(), 65536);
    record.Add(Line(1));
    record.Add(Line(2));
    const std::string text = file.Text();
    EXPECT_EQ(text.substr(0, text.find_last_not_of(' ') + 1), "[\n" + Line(1) + Line(2));
}

TEST_F(RecordFile, KeepsTheNewestLinesWhenItIsFull) {
    constexpr int lines = 10000;
    {
        TraceFile record(file.path.c_str(), 65536);
        for (int i = 1; i <= lines; ++i) {
            record.Add(Line(i));
        }
        record.Finish(last);
    }
    const std::vector<int> times = Times();
    EXPECT_LE(file.Text().size(), 65536U);
    ASSERT_GT(times.size(), 700U);
    // All that is left is the end of what was added, without a gap.
    EXPECT_EQ(times[times.size() - 2], lines);
    EXPECT_EQ(times.front(), lines - static_cast<int>(times.size()) + 2);
}

TEST_F(RecordFile, RecordsNothingWhereNoFileCanBe) {
    TraceFile record((file.folder / "no" / "folder").c_str(), 65536);
    EXPECT_FALSE(record.IsThere());
    record.Add(Line(1));
    record.Finish(last);
}

TEST(RecordLine, HasTextsAsJsonAndCutsLongOnes) {
    TraceArguments arguments;
    arguments.Add("quoted", "a \"b\" \\ \n").Add("long", std::wstring(300, L'\u00e9').c_str());
    arguments.Add("none", static_cast<const wchar_t*>(nullptr)).Add("number", int64_t{-5}).Add("yes", true);
    std::string line = TraceLine(TracePhase::Begin, "name", 1500, 3, 4, arguments);
    line.resize(line.rfind(','));
    std::string cut;
    for (int i = 0; i < 200; ++i) {
        cut += "\u00e9";
    }
    EXPECT_EQ(json::parse(line),
              (json{{"name", "name"},
                    {"ph", "B"},
                    {"ts", 1.5},
                    {"pid", 3},
                    {"tid", 4},
                    {"args",
                     {{"quoted", "a \"b\" \\ \n"}, {"long", cut}, {"none", nullptr}, {"number", -5}, {"yes", true}}}}));
}

// The process whose record the next test reads: not a test of its own.
class PlantedRecord : public InstalledAgentTest {
    const OnPurpose mistakes{"TASK-STATUS"};
};
TEST_F(PlantedRecord, DISABLED_HasACollectionAndASecret) {
    const Registration registration("RECORD1000", collector);
    const Product product("RECORD1000", &sink);
    EXPECT_EQ(Ask("RECORD1000"), answered);
    const unsigned char secret[] = "the secret";
    unsigned char out[64] = {};
    unsigned size = 0;
    EXPECT_EQ(VsKitMsgbusEncryptData(secret, sizeof secret, out, &size, 0), 0);
    UpdateMsgbusTaskStatus(L"task", 50);
    ny_dl_t library{};
    EXPECT_EQ(ny_dl_open("kernel32.dll", 0, &library), 0U);
    EXPECT_NE(ny_dl_sym(&library, "GetTickCount"), nullptr);
    ny_dl_close(&library);
    ny_temp_buffer_t buffer;
    ny_temp_buffer_init(&buffer);
    EXPECT_EQ(ny_temp_buffer_reserve(&buffer, 1), 0U);
    ny_temp_buffer_uninit(&buffer);
}

class Record : public CheckedTest {
protected:
    json Of(const std::string& test) const {
        ::SetEnvironmentVariableW(L"VSMSGBUS_TRACE", record.path.c_str());
        EXPECT_EQ(RunInOwnProcess(test), 0);
        ::SetEnvironmentVariableW(L"VSMSGBUS_TRACE", nullptr);
        return json::parse(record.Text());
    }

    LogFile record;
};

TEST_F(Record, HasExportsAndCallbacksAsSpansThatEndInTurn) {
    std::map<int, std::vector<std::string>> inside;
    std::vector<std::string> begun;
    for (const json& event : Of("PlantedRecord.DISABLED_HasACollectionAndASecret")) {
        std::vector<std::string>& stack = inside[event["tid"]];
        if (event["ph"] == "B") {
            stack.push_back(event["name"]);
            begun.push_back(event["name"]);
        } else if (event["ph"] == "E") {
            ASSERT_FALSE(stack.empty());
            EXPECT_EQ(event["name"], stack.back());
            stack.pop_back();
        }
    }
    for (const auto& [thread, stack] : inside) {
        EXPECT_TRUE(stack.empty());
    }
    EXPECT_THAT(begun,
                testing::IsSupersetOf({"VsKitMsgbusSetCollectProperties", "VsMsgbusEntry", "agent client starts",
                                       "CollectProperties", "SetProperty", "GetLogLevel", "VsKitMsgbusEncryptData",
                                       "UpdateMsgbusTaskStatus", "VsMsgbusExit", "agent client ends",
                                       "VsKitMsgbusRemoveCollectProperties", "ny_dl_open", "ny_dl_sym", "ny_dl_close",
                                       "ny_temp_buffer_init", "ny_temp_buffer_reserve", "ny_temp_buffer_uninit"}));
}

TEST_F(Record, HasArgumentsAndAnswersAndNoSecret) {
    std::map<std::string, json> begins;
    std::map<std::string, json> ends;
    for (const json& event : Of("PlantedRecord.DISABLED_HasACollectionAndASecret")) {
        (event["ph"] == "B" ? begins : ends)[event["name"]] = event.value("args", json());
    }
    EXPECT_EQ(begins["VsMsgbusEntry"], (json{{"product", "RECORD1000"}, {"mask", VsMsgbusServiceProperty}}));
    EXPECT_EQ(ends["VsMsgbusEntry"], (json{{"answer", 1}}));
    EXPECT_EQ(begins["SetProperty"], (json{{"path", "general"}, {"name", "version"}, {"value", "1.0"}}));
    EXPECT_EQ(ends["SetProperty"], (json{{"answer", true}}));
    EXPECT_EQ(begins["UpdateMsgbusTaskStatus"], (json{{"task", "task"}, {"status", 50}}));
    EXPECT_EQ(begins["VsKitMsgbusEncryptData"], (json{{"size", 11}}));
    EXPECT_EQ(record.Text().find("the secret"), std::string::npos);
}

TEST_F(Record, HasLibrariesAgentsAndFindingsAsInstants) {
    std::vector<std::string> paths;
    json finding;
    std::vector<json> versions;
    for (const json& event : Of("PlantedRecord.DISABLED_HasACollectionAndASecret")) {
        if (event["name"] == "library opened") {
            EXPECT_EQ(event["args"]["code"], 0);
            paths.push_back(event["args"]["path"]);
        } else if (event["name"] == "finding") {
            finding = event["args"];
        } else if (event["name"] == "agent installed") {
            versions.push_back(event["args"]["version"]);
        }
    }
    EXPECT_THAT(paths, testing::Contains(testing::HasSubstr("ny_client.dll")));
    EXPECT_EQ(versions, std::vector<json>{"5.7.0"}) << "told once";
    EXPECT_EQ(finding, (json{{"rule", "TASK-STATUS"}, {"product", "RECORD1000"}}));
}

}  // namespace
