// An event as a line of text.
#include "loglib/LogLine.h"

#include <gmock/gmock.h>

#include "support/LineLog.h"

namespace {

using namespace std::chrono_literals;

constexpr auto noon = std::chrono::sys_days(std::chrono::year(2026) / 3 / 1) + 12h;

std::string Line(const LogUtils::LogRecord& event, std::chrono::system_clock::time_point time = noon) {
    return Narrow(LogLine(event, time, 4711));
}

TEST(LogLine, SaysTimeProcessAndPlace) {
    EXPECT_EQ(Line({"policy/X.cpp", 21, 8, L"NySpb", L"Successfully set X "}, noon + 250ms),
              "2026-03-01T12:00:00.250Z 4711 severity=8 NySpb policy/X.cpp(21): Successfully set X \r\n");
}

TEST(LogLine, HasTheSameWidthAtAnyTime) {
    const auto early = std::chrono::sys_days(std::chrono::year(2031) / 12 / 31) + 1h + 2min + 3s + 4ms + 999us;
    EXPECT_EQ(Line({"f", 1, 3, L"c", L"t"}, early), "2031-12-31T01:02:03.004Z 4711 severity=3 c f(1): t\r\n");
}

TEST(LogLine, TakesAnyNumberAndEmptyTexts) {
    EXPECT_EQ(Line({"", -1, -2147483647 - 1, L"", L""}),
              "2026-03-01T12:00:00.000Z 4711 severity=-2147483648  (-1): \r\n");
}

TEST(LogLine, IsOneLineWhateverTheTextsSay) {
    EXPECT_EQ(Line({"a\nb", 1, 8, L"c\r\nd", L"one\ntwo\r\n2026-03-01 faked\ttab"}),
              "2026-03-01T12:00:00.000Z 4711 severity=8 c\\r\\nd a\\nb(1): one\\ntwo\\r\\n2026-03-01 faked\\ttab\r\n");
    EXPECT_EQ(Line({"f", 1, 8, L"c", L"\x01\x1B[31m\x7F\x85\x9F\x2028\x2029"}),
              "2026-03-01T12:00:00.000Z 4711 severity=8 c f(1): \\x01\\x1B[31m\\x7F\\x85\\x9F\\u2028\\u2029\r\n");
}

TEST(LogLine, KeepsEveryScriptAndBackslashes) {
    EXPECT_EQ(Line({"\xC3\xBC.cpp", 1, 8, L"\u00A0c", L"C:\\x \u20AC \U0001F600"}),
              "2026-03-01T12:00:00.000Z 4711 severity=8 \xC2\xA0"
              "c \xC3\xBC.cpp(1): C:\\x \xE2\x82\xAC \xF0\x9F\x98\x80\r\n");
}

}  // namespace
