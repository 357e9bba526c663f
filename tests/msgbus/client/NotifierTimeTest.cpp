// The install watcher's real time: each of these tests takes more than fifteen seconds.
#include <chrono>

#include "msgbus/client/NotifierFixture.h"
#include "msgbus/client/SystemCalls.h"

namespace {

using namespace std::chrono_literals;
using testing::AllOf;
using testing::ElementsAre;
using testing::Ge;
using testing::IsEmpty;
using testing::Le;

class NotifierTime : public NotifierFixture {};

TEST_F(NotifierTime, RealFifteenSecondsPassBeforeAnUnchangedVersionIsReadAgain) {
    WriteVersion("5.7.0");
    const Waits waits(*notifier);
    Questions questions;
    ASSERT_EQ(Start(), NY_OK);
    ASSERT_TRUE(waits.log.WaitForSize(1));
    lines.Take();
    questions.asked.Take();
    const auto before = std::chrono::steady_clock::now();
    ASSERT_TRUE(waits.log.WaitForSize(2));
    EXPECT_THAT(std::chrono::steady_clock::now() - before, AllOf(Ge(14500ms), Le(20s)));
    EXPECT_THAT(waits.log.Lines(), ElementsAre("15000", "infinite"));
    EXPECT_THAT(questions.asked.Lines(), ElementsAre("MsgbusVersion 19"));
    EXPECT_THAT(lines.Lines(), IsEmpty());
    End();
}

TEST_F(NotifierTime, RealFifteenSecondsAreGivenToAThreadThatDoesNotEnd) {
    InstallAndWatch();
    UpgradeAndHold("5.8.0");
    lines.Take();
    const auto before = std::chrono::steady_clock::now();
    EXPECT_EQ(NotifierStop(notifier), NY_UNEXPECTED);
    EXPECT_THAT(std::chrono::steady_clock::now() - before, AllOf(Ge(14500ms), Le(20s)));
    EXPECT_THAT(lines.Lines(), ElementsAre(threadNotStopped));
}

}  // namespace
