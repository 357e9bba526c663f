// Failures inside the log do not reach the caller who logs.
#include <gmock/gmock.h>
#include <windows.h>

#include <climits>
#include <stdexcept>

#include "loglib/LogLib.h"
#include "loglib/Utf8.h"
#include "support/DebuggerOutput.h"
#include "support/FailingMemory.h"
#include "support/HostLog.h"
#include "support/LogFile.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

LogUtils::LogEvent DoomedEvent() {
    return {"room/Source.cpp", 12, 8, "Own", getLogManager(), 2, false};
}

TEST(LogEventFailure, OfMemoryAtAnyAllocationLosesTheEventAndNothingElse) {
    DebuggerOutput debugger;
    size_t written = 0;
    for (size_t allocations = 0; written == 0; ++allocations) {
        {
            const FailingMemory memory(allocations, 1);
            DoomedEvent()(L"NySpb", "a text of some length, number %d", 1);
        }
        written = debugger.log.Take().size();
        ASSERT_LT(allocations, 1000U) << "never written";
    }
    DoomedEvent()(nullptr, L"text");
    EXPECT_THAT(debugger.log.Lines(), SizeIs(1));
}

class ThrowingListener final : public LogUtils::LogListener {
    void OnLogEvent(const LogUtils::LogRecord& /*event*/) override { throw std::runtime_error("not today"); }
};

TEST(LogEventFailure, OfTheListenerIsDroppedAndTheEventIsWritten) {
    const DebuggerOutput debugger;
    ThrowingListener listener;
    getLogManager()->SetListener(&listener);
    DoomedEvent()(L"NySpb", L"text");
    EXPECT_EQ(getLogManager()->SetListener(nullptr), &listener);
    EXPECT_THAT(debugger.log.Lines(), SizeIs(1));
}

TEST(LogEventFailure, LeavesTheLastErrorAsItWas) {
    const LogFile file;
    for (const auto& path : {file.path, file.folder / "missing" / "host.log"}) {
        getLogManager()->SetFile(path.wstring().c_str());
        ::SetLastError(1234);
        DoomedEvent()(L"NySpb", L"text");
        EXPECT_EQ(::GetLastError(), 1234U);
    }
    getLogManager()->SetFile(nullptr);
}

int WINAPI ConvertNothing(UINT /*codePage*/, DWORD /*flags*/, const char* /*text*/, int /*size*/, wchar_t* /*wide*/,
                          int /*wideSize*/) {
    return 0;
}

TEST(LogEventFailure, OfTheSystemsConversionLosesTheEvent) {
    const HostLog host;
    {
        const SystemFunction<decltype(::MultiByteToWideChar)> failing(&::MultiByteToWideChar, &ConvertNothing);
        DoomedEvent()(L"NySpb", "text %d", 1);
    }
    EXPECT_THAT(host.log.Lines(), IsEmpty());
    DoomedEvent()(L"NySpb", "text %d", 2);
    EXPECT_THAT(host.log.Lines(), ElementsAre("8 NySpb: text 2"));
}

TEST(LogEventFailure, OfMalformedTextReplacesIt) {
    const HostLog host;
    DoomedEvent()(L"NySpb", "bad \xFF byte");
    EXPECT_THAT(host.log.Lines(), ElementsAre("8 NySpb: bad \xEF\xBF\xBD byte"));
}

// Nothing of a text of that length is read.
TEST(LogText, OfTwoGigabytesIsNotConverted) {
    constexpr size_t tooLong = size_t{INT_MAX} + 1;
    EXPECT_THROW(WideFromUtf8(std::string_view("x", tooLong)), std::length_error);
    EXPECT_THROW(Utf8FromWide(std::wstring_view(L"x", tooLong)), std::length_error);
}

TEST(LogText, ThatIsEmptyStaysEmpty) {
    EXPECT_EQ(WideFromUtf8({}), L"");
    EXPECT_EQ(Utf8FromWide({}), "");
}

// Of the two calls of a conversion the second: the first one only asks for the size.
int WINAPI ConvertNothingTheSecondTime(UINT /*codePage*/, DWORD /*flags*/, const char* /*text*/, int /*size*/,
                                       wchar_t* wide, int /*wideSize*/) {
    return wide == nullptr ? 4 : 0;
}

TEST(LogText, ThatTheSystemDoesNotConvertIsNone) {
    const SystemFunction<decltype(::MultiByteToWideChar)> failing(&::MultiByteToWideChar, &ConvertNothingTheSecondTime);
    EXPECT_THROW(WideFromUtf8("text"), std::runtime_error);
}

// Where the C library refuses such a character, the format stands for the text; where it stops there, what was before
// it.
TEST(LogEventFailure, OfTheFormatterLeavesTheFormat) {
    const HostLog host;
    DoomedEvent()(L"NySpb", "text %ls", L"\xD800");
    EXPECT_THAT(host.log.Lines(), ElementsAre(testing::AnyOf("8 NySpb: text %ls", "8 NySpb: text ")));
}

}  // namespace
