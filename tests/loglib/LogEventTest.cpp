// The record that an event hands to the log.
#include <gmock/gmock.h>

#include <string>

#include "loglib/LogLib.h"
#include "support/HostLog.h"

namespace {

using testing::ElementsAre;

class LogEventTest : public testing::Test {
protected:
    static LogUtils::LogEvent Event(int32_t severity = 8, const char* component = "Own") {
        return {"room/Source.cpp", 12, severity, component, getLogManager(), 2, false};
    }

    HostLog host;
};

TEST_F(LogEventTest, HasTheTextAsItIs) {
    Event()(L"NySpb", L"100 %d %s\nnext line \u20AC");
    Event(3)(L"", L"");
    EXPECT_THAT(host.log.Lines(), ElementsAre("8 NySpb: 100 %d %s\nnext line \xE2\x82\xAC", "3 : "));
}

TEST_F(LogEventTest, HasTheFormattedText) {
    Event()(L"NySpb", "Error %d getting %s, %5.1f%%", -7, "\xC3\xBC", 2.25);
    EXPECT_THAT(host.log.Lines(), ElementsAre("8 NySpb: Error -7 getting \xC3\xBC,   2.2%"));
}

TEST_F(LogEventTest, MayBeLong) {
    const std::string longText(1024 * 1024, 'x');
    Event()(L"NySpb", "%s!", longText.c_str());
    Event()(L"NySpb", std::wstring(longText.begin(), longText.end()).c_str());
    EXPECT_THAT(host.log.Lines(), ElementsAre("8 NySpb: " + longText + "!", "8 NySpb: " + longText));
}

TEST_F(LogEventTest, NamesWhatIsNull) {
    const wchar_t* noText = nullptr;
    // Not by its name: the compiler knows of this form that a format is needed.
    void (LogUtils::LogEvent::*const formatted)(const wchar_t*, const char*, ...) const =
        &LogUtils::LogEvent::operator();
    Event()(L"NySpb", noText);
    (Event().*formatted)(L"NySpb", nullptr);
    Event()(nullptr, L"own component");
    Event(8, nullptr)(nullptr, "no component %d", 1);
    EXPECT_THAT(host.log.Lines(),
                ElementsAre("8 NySpb: <null>", "8 NySpb: <null>", "8 Own: own component", "8 <null>: no component 1"));
    LogUtils::LogEvent(nullptr, 1, 8, "Own", getLogManager(), 2, false)(L"NySpb", L"no file");
    EXPECT_THAT(host.Files(), ElementsAre("<null>", "room/Source.cpp"));
}

TEST_F(LogEventTest, GoesNowhereWithoutAManager) {
    const LogUtils::LogEvent event("room/Source.cpp", 12, 8, "Own", nullptr, 2, false);
    event(L"NySpb", L"text");
    event(L"NySpb", "format %d", 1);
    EXPECT_THAT(host.log.Lines(), testing::IsEmpty());
}

TEST_F(LogEventTest, CanBeLoggedMoreThanOnce) {
    const LogUtils::LogEvent event = Event();
    event(L"NySpb", L"one");
    event(L"NySpb", L"two");
    EXPECT_THAT(host.log.Lines(), ElementsAre("8 NySpb: one", "8 NySpb: two"));
}

}  // namespace
