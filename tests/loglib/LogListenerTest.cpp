// The listener of the host's log, and how it is taken away.
#include <gmock/gmock.h>

#include <functional>
#include <thread>

#include "loglib/LogLib.h"
#include "support/Checkpoint.h"
#include "support/LineLog.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// A listener that does what the test says.
class ActingListener final : public LogUtils::LogListener {
public:
    std::function<void(const LogUtils::LogRecord&)> onEvent;

private:
    void OnLogEvent(const LogUtils::LogRecord& event) override { onEvent(event); }
};

class LogListenerTest : public testing::Test {
protected:
    void TearDown() override { getLogManager()->SetListener(nullptr); }

    static void Log(const wchar_t* text) {
        LogUtils::LogEvent("f", 1, 8, "Own", getLogManager(), 2, false)(L"NySpb", text);
    }

    LineLog log;
    ActingListener listener;
};

TEST_F(LogListenerTest, IsReplacedByTheNext) {
    ActingListener other;
    listener.onEvent = [&](const auto& event) { log.Add("first " + Narrow(event.text)); };
    other.onEvent = [&](const auto& event) { log.Add("second " + Narrow(event.text)); };
    EXPECT_EQ(getLogManager()->SetListener(&listener), nullptr);
    Log(L"a");
    EXPECT_EQ(getLogManager()->SetListener(&other), &listener);
    Log(L"b");
    EXPECT_EQ(getLogManager()->SetListener(nullptr), &other);
    Log(L"c");
    EXPECT_THAT(log.Lines(), ElementsAre("first a", "second b"));
}

TEST_F(LogListenerTest, MayLogItself) {
    listener.onEvent = [&](const auto& event) {
        log.Add(Narrow(event.text));
        if (Narrow(event.text) == "outer") {
            Log(L"inner");
        }
    };
    getLogManager()->SetListener(&listener);
    Log(L"outer");
    EXPECT_THAT(log.Lines(), ElementsAre("outer", "inner"));
}

TEST_F(LogListenerTest, MayTakeItselfAway) {
    listener.onEvent = [&](const auto& event) {
        log.Add(Narrow(event.text));
        EXPECT_EQ(getLogManager()->SetListener(nullptr), &listener);
    };
    getLogManager()->SetListener(&listener);
    Log(L"one");
    Log(L"two");
    EXPECT_THAT(log.Lines(), ElementsAre("one"));
}

TEST_F(LogListenerTest, IsWaitedForWhenItIsTakenAway) {
    Checkpoint held;
    listener.onEvent = [&](const auto& /*event*/) {
        held.Stop();
        log.Add("out");
    };
    getLogManager()->SetListener(&listener);
    std::thread logging([] { Log(L"text"); });
    EXPECT_TRUE(held.isInside.Wait());
    std::thread taking([&] {
        getLogManager()->SetListener(nullptr);
        log.Add("taken away");
    });
    EXPECT_FALSE(log.WaitFor("taken away", 1, std::chrono::milliseconds(100)));
    EXPECT_THAT(log.Lines(), IsEmpty());
    held.mayGoOn.Set();
    logging.join();
    taking.join();
    EXPECT_THAT(log.Lines(), ElementsAre("out", "taken away"));
}

TEST_F(LogListenerTest, SeesTheEventsOfManyThreadsOneAtATime) {
    constexpr int threadCount = 4;
    int seen = 0;  // not atomic: the log keeps threads apart
    listener.onEvent = [&](const auto& /*event*/) { ++seen; };
    getLogManager()->SetListener(&listener);
    std::vector<std::thread> threads;
    for (int i = 0; i < threadCount; ++i) {
        threads.emplace_back([] {
            for (int j = 0; j < 50; ++j) {
                Log(L"text");
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(seen, threadCount * 50);
}

}  // namespace
