// Where the host's log goes when all goes well.
#include "loglib/LogDestination.h"

#include <gmock/gmock.h>

#include <thread>

#include "support/DebuggerOutput.h"
#include "support/LogFile.h"
#include "support/Rendezvous.h"
#include "support/Text.h"
#include "support/TokenOfProcess.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class LogDestinationTest : public testing::Test {
protected:
    std::wstring Path() const { return file.path.wstring(); }

    LogFile file;
    DebuggerOutput debugger;
    LogDestination destination;
};

TEST_F(LogDestinationTest, IsTheDebuggerAtFirst) {
    destination.Write(L"line\r\n");
    EXPECT_THAT(debugger.log.Lines(), ElementsAre("line\r\n"));
}

TEST_F(LogDestinationTest, IsTheEndOfTheChosenFile) {
    EXPECT_TRUE(destination.Choose(Path().c_str()));
    EXPECT_FALSE(file.Exists());
    destination.Write(L"one \u20AC\r\n");
    destination.Write(L"two\r\n");
    EXPECT_THAT(file.Lines(), ElementsAre("one \xE2\x82\xAC", "two"));
    LogDestination again;
    again.Choose(Path().c_str());
    again.Write(L"three\r\n");
    EXPECT_THAT(file.Lines(), SizeIs(3));
    EXPECT_THAT(debugger.log.Lines(), IsEmpty());
}

TEST_F(LogDestinationTest, MayHaveANameInAnyScript) {
    const auto path = file.folder / std::filesystem::path(u8"\u00FC \u7B56.log");
    const std::u8string utf8 = path.u8string();
    destination.Choose(Wide({reinterpret_cast<const char*>(utf8.data()), utf8.size()}).c_str());
    destination.Write(L"line\r\n");
    EXPECT_EQ(std::filesystem::file_size(path), 6U);
}

TEST_F(LogDestinationTest, IsWhatTheEnvironmentSaysUnlessOneIsChosen) {
    const TokenOfProcess ordinary;
    const LogFileVariable variable(Path().c_str());
    destination.Write(L"environment\r\n");
    destination.Choose((file.folder / "other.log").wstring().c_str());
    destination.Write(L"chosen\r\n");
    EXPECT_EQ(std::filesystem::file_size(file.folder / "other.log"), 8U);
    destination.Choose(L"");
    destination.Write(L"debugger\r\n");
    EXPECT_THAT(debugger.log.Lines(), ElementsAre("debugger\r\n"));
    destination.Choose(nullptr);
    destination.Write(L"environment again\r\n");
    EXPECT_THAT(file.Lines(), ElementsAre("environment", "environment again"));
}

TEST_F(LogDestinationTest, IsNotWhatTheEnvironmentSaysInAProcessWithHigherRights) {
    TokenOfProcess service;
    service.session = 0;
    const LogFileVariable variable(Path().c_str());
    destination.Write(L"debugger\r\n");
    EXPECT_FALSE(file.Exists());
    EXPECT_THAT(debugger.log.Lines(), ElementsAre("debugger\r\n"));
    destination.Choose(Path().c_str());
    destination.Write(L"chosen\r\n");
    EXPECT_THAT(file.Lines(), ElementsAre("chosen"));
}

TEST_F(LogDestinationTest, IsTheDebuggerWhenTheVariableIsEmpty) {
    const TokenOfProcess ordinary;
    const LogFileVariable variable(L"");
    destination.Write(L"line\r\n");
    EXPECT_THAT(debugger.log.Lines(), ElementsAre("line\r\n"));
}

TEST_F(LogDestinationTest, IsMadeAnewWhenItWasMovedAway) {
    destination.Choose(Path().c_str());
    destination.Write(L"one\r\n");
    file.Delete();
    destination.Write(L"two\r\n");
    EXPECT_THAT(file.Lines(), ElementsAre("two"));
}

TEST_F(LogDestinationTest, HoldsNothingOpen) {
    const auto openHandles = [] {
        DWORD count = 0;
        EXPECT_TRUE(::GetProcessHandleCount(::GetCurrentProcess(), &count));
        return count;
    };
    destination.Choose(Path().c_str());
    destination.Write(L"one\r\n");
    const DWORD before = openHandles();
    destination.Write(L"two\r\n");
    destination.Choose((file.folder / "missing" / "x.log").wstring().c_str());
    destination.Write(L"three\r\n");
    EXPECT_EQ(openHandles(), before);
}

TEST_F(LogDestinationTest, TakesWholeLinesFromManyThreads) {
    constexpr int threadCount = 4;
    constexpr int lineCount = 50;
    destination.Choose(Path().c_str());
    Rendezvous start(threadCount);
    std::vector<std::thread> threads;
    for (int i = 0; i < threadCount; ++i) {
        threads.emplace_back([&, i] {
            const std::wstring line = std::wstring(100, static_cast<wchar_t>(L'a' + i)) + L"\r\n";
            start.Meet();
            for (int j = 0; j < lineCount; ++j) {
                destination.Write(line);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    const auto lines = file.Lines();
    for (int i = 0; i < threadCount; ++i) {
        EXPECT_EQ(std::count(lines.begin(), lines.end(), std::string(100, static_cast<char>('a' + i))), lineCount);
    }
    EXPECT_THAT(lines, SizeIs(threadCount * lineCount));
}

}  // namespace
