// The process-wide log sink.
#include "msgbus/BridgeLog.h"

#include <gmock/gmock.h>

#include <atomic>
#include <functional>
#include <thread>

#include "support/CapturingSink.h"
#include "support/Checkpoint.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// A sink that does what the test says.
class ActingSink final : public VsKitMsgbus::ILogSink {
public:
    void Write(int /*level*/, const wchar_t* /*text*/) override { onWrite(); }
    std::function<void()> onWrite;
};

class BridgeLog : public testing::Test {
protected:
    void TearDown() override { ClearLogSink(); }

    static void Write(const wchar_t* text) {
        VsKit::CUniStream stream;
        stream << text;
        WriteBridgeLog(stream);
    }

    CapturingSink sink;
    CapturingSink other;
    ActingSink acting;
};

TEST_F(BridgeLog, IsNoneAtFirst) {
    EXPECT_EQ(CurrentLogSink(), nullptr);
    Write(L"text");
    ClearLogSink();
}

TEST_F(BridgeLog, IsNotTheNullOne) {
    EXPECT_FALSE(OfferLogSink(nullptr));
    EXPECT_EQ(CurrentLogSink(), nullptr);
    EXPECT_TRUE(OfferLogSink(&sink));
    EXPECT_FALSE(OfferLogSink(nullptr));
    EXPECT_EQ(CurrentLogSink(), &sink);
}

TEST_F(BridgeLog, IsTheFirstThatIsOffered) {
    EXPECT_TRUE(OfferLogSink(&sink));
    EXPECT_FALSE(OfferLogSink(&other));
    EXPECT_FALSE(OfferLogSink(&sink));
    Write(L"text");
    EXPECT_THAT(sink.log.Lines(), ElementsAre("3: text"));
    EXPECT_THAT(other.log.Lines(), IsEmpty());
}

TEST_F(BridgeLog, GetsNoEmptyText) {
    OfferLogSink(&sink);
    Write(L"");
    EXPECT_THAT(sink.log.Lines(), IsEmpty());
}

TEST_F(BridgeLog, GetsNothingOnceItWasTakenAwayAndMakesRoomForTheNext) {
    OfferLogSink(&sink);
    ClearLogSink();
    EXPECT_EQ(CurrentLogSink(), nullptr);
    Write(L"first");
    EXPECT_TRUE(OfferLogSink(&other));
    Write(L"second");
    EXPECT_THAT(sink.log.Lines(), IsEmpty());
    EXPECT_THAT(other.log.Lines(), ElementsAre("3: second"));
}

TEST_F(BridgeLog, MayThrowAndIsAskedAgain) {
    int writes = 0;
    acting.onWrite = [&] {
        ++writes;
        throw writes;
    };
    OfferLogSink(&acting);
    Write(L"first");
    Write(L"second");
    EXPECT_EQ(writes, 2);
    ClearLogSink();
    Write(L"third");
    EXPECT_EQ(writes, 2);
}

TEST_F(BridgeLog, IsTakenAwayOnlyWhenNoWriteRunsOnAnotherThread) {
    LineLog log;
    Checkpoint held;
    acting.onWrite = [&] {
        held.Stop();
        log.Add("written");
    };
    OfferLogSink(&acting);
    std::thread writing([] { Write(L"text"); });
    ASSERT_TRUE(held.isInside.Wait());
    Event isCleared;
    std::thread clearing([&] {
        ClearLogSink();
        log.Add("cleared");
        isCleared.Set();
    });
    EXPECT_FALSE(isCleared.Wait(std::chrono::milliseconds(50)));
    EXPECT_EQ(CurrentLogSink(), nullptr);
    held.mayGoOn.Set();
    writing.join();
    clearing.join();
    EXPECT_THAT(log.Lines(), ElementsAre("written", "cleared"));
}

TEST_F(BridgeLog, CanBeTakenAwayFromInsideItsWrite) {
    int writes = 0;
    acting.onWrite = [&] {
        ++writes;
        ClearLogSink();
        Write(L"from inside");
    };
    OfferLogSink(&acting);
    Write(L"text");
    EXPECT_EQ(writes, 1);
    EXPECT_EQ(CurrentLogSink(), nullptr);
}

TEST_F(BridgeLog, CanBeWrittenToOnTwoThreadsAtOnce) {
    Checkpoint held;
    std::atomic<int> writes = 0;
    acting.onWrite = [&] {
        if (++writes == 1) {
            held.Stop();
        }
    };
    OfferLogSink(&acting);
    std::thread writing([] { Write(L"first"); });
    ASSERT_TRUE(held.isInside.Wait());
    Write(L"second");
    EXPECT_EQ(writes.load(), 2);
    held.mayGoOn.Set();
    writing.join();
}

}  // namespace
