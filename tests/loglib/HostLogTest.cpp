// The host's log as a module has it: LogLib.dll through its exports.
#include <gmock/gmock.h>

#include <regex>

#include "support/HostLog.h"
#include "support/LogFile.h"
#include "support/TokenOfProcess.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

// A log file that is chosen while the object lives.
class ChosenLogFile : public LogFile {
public:
    ChosenLogFile() { EXPECT_TRUE(getLogManager()->SetFile(path.wstring().c_str())); }
    ~ChosenLogFile() { getLogManager()->SetFile(nullptr); }
};

constexpr int32_t sourceLine = 12;

LogUtils::LogEvent MakeEvent(int32_t severity = 8) {
    return {"room/Source.cpp", sourceLine, severity, "Own", getLogManager(), 2, false};
}

TEST(HostLog, HasOneManager) {
    EXPECT_NE(getLogManager(), nullptr);
    EXPECT_EQ(getLogManager(), getLogManager());
}

TEST(HostLog, WritesOneLineForEachEvent) {
    const ChosenLogFile file;
    MakeEvent()(L"NySpb", L"Successfully set OASPolicyName ");
    MakeEvent(3)(L"NySpb", "Error %d getting %s", 705, "digest");
    const auto lines = file.Lines();
    ASSERT_THAT(lines, SizeIs(2));
    const std::string begin = R"(\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d\.\d{3}Z )" + std::to_string(::GetCurrentProcessId());
    const std::string place = R"( NySpb room/Source\.cpp\(12\): )";
    const std::regex first(begin + " severity=8" + place + "Successfully set OASPolicyName ");
    const std::regex second(begin + " severity=3" + place + "Error 705 getting digest");
    EXPECT_TRUE(std::regex_match(lines[0], first)) << lines[0];
    EXPECT_TRUE(std::regex_match(lines[1], second)) << lines[1];
}

TEST(HostLog, TellsItsListenerUntilThatIsTakenAway) {
    {
        const HostLog host;
        MakeEvent()(L"NySpb", L"text");
        MakeEvent(3)(L"Other", "code %d", -1);
        EXPECT_THAT(host.log.Lines(), ElementsAre("8 NySpb: text", "3 Other: code -1"));
        EXPECT_THAT(host.Files(), ElementsAre("room/Source.cpp"));
        EXPECT_THAT(host.SourceLines(), ElementsAre(sourceLine));
    }
    MakeEvent()(L"NySpb", L"after");
    const HostLog later;
    EXPECT_THAT(later.log.Lines(), IsEmpty());
}

TEST(HostLog, WritesWhereTheEnvironmentSays) {
    const TokenOfProcess ordinary("LogLib.dll");
    const LogFile file;
    const LogFileVariable variable(file.path.wstring().c_str());
    MakeEvent()(L"NySpb", L"text");
    EXPECT_THAT(file.Lines(), SizeIs(1));
}

// The user who started an elevated process may have fewer rights than the process.
TEST(HostLog, DoesNotWriteWhereTheEnvironmentOfAnElevatedProcessSays) {
    TokenOfProcess elevated("LogLib.dll");
    elevated.isElevated = true;
    const LogFile file;
    const LogFileVariable variable(file.path.wstring().c_str());
    MakeEvent()(L"NySpb", L"text");
    EXPECT_FALSE(file.Exists());
    const ChosenLogFile chosen;
    MakeEvent()(L"NySpb", L"text");
    EXPECT_THAT(chosen.Lines(), SizeIs(1));
}

}  // namespace
