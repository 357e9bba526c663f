// Calls that wait for their turn at the gate.
#include <gtest/gtest.h>

#include <atomic>
#include <optional>
#include <thread>

#include "base/CallGate.h"
#include "support/Event.h"

namespace {

// How long a test looks on while nothing should happen.
constexpr std::chrono::milliseconds moment{30};

// A call of a thread of its own that may have to wait for its turn.
class WaitingCall {
public:
    explicit WaitingCall(CallGate& gate)
        : thread([this, &gate] {
              const CallGate::Call call(gate, CallGate::Admission::OneThreadAtATime);
              isInside = static_cast<bool>(call);
              answered.Set();
              leave.Wait();
          }) {}
    ~WaitingCall() {
        leave.Set();
        thread.join();
    }

    // Whether the gate let the call in or not, it said so.
    bool IsAnswered(std::chrono::milliseconds limit = soon) const { return answered.Wait(limit); }
    bool IsInside() const { return isInside; }

private:
    Event answered;
    Event leave;
    std::atomic<bool> isInside = false;
    std::thread thread;
};

TEST(GateTurn, ComesWhenTheThreadInsideHasLeft) {
    CallGate gate;
    std::optional<CallGate::Call> own(std::in_place, gate, CallGate::Admission::OneThreadAtATime);
    const WaitingCall waiting(gate);
    EXPECT_FALSE(waiting.IsAnswered(moment));
    own.reset();
    EXPECT_TRUE(waiting.IsAnswered());
    EXPECT_TRUE(waiting.IsInside());
}

TEST(GateTurn, IsNotWaitedForByTheThreadInside) {
    CallGate gate;
    const CallGate::Call outer(gate, CallGate::Admission::OneThreadAtATime);
    const CallGate::Call inner(gate, CallGate::Admission::OneThreadAtATime);
    EXPECT_TRUE(outer);
    EXPECT_TRUE(inner);
}

TEST(GateTurn, IsNotWaitedForByCallsThatGoTogether) {
    CallGate gate;
    const WaitingCall first(gate);
    ASSERT_TRUE(first.IsAnswered());
    const CallGate::Call own(gate);
    EXPECT_TRUE(own);
}

TEST(GateTurn, DoesNotComeOnceTheGateIsClosed) {
    CallGate gate;
    const CallGate::Call own(gate);
    const WaitingCall waiting(gate);
    EXPECT_FALSE(waiting.IsAnswered(moment));
    gate.Close();
    EXPECT_TRUE(waiting.IsAnswered());
    EXPECT_FALSE(waiting.IsInside());
}

TEST(GateTurn, DoesNotComeWhileTheThreadInsideTurnsOthersAway) {
    CallGate gate;
    std::optional<CallGate::Call> own(std::in_place, gate);
    const WaitingCall early(gate);
    EXPECT_FALSE(early.IsAnswered(moment));
    {
        const CallGate::TurnAwayOthers turnAway(gate);
        EXPECT_TRUE(early.IsAnswered());
        EXPECT_FALSE(early.IsInside());
        const WaitingCall late(gate);
        EXPECT_TRUE(late.IsAnswered());
        EXPECT_FALSE(late.IsInside());
    }
    const WaitingCall afterwards(gate);
    EXPECT_FALSE(afterwards.IsAnswered(moment));
    own.reset();
    EXPECT_TRUE(afterwards.IsAnswered());
    EXPECT_TRUE(afterwards.IsInside());
}

TEST(GateTurn, IsNotTurnedAwayByAThreadThatIsOutside) {
    CallGate gate;
    const CallGate::TurnAwayOthers turnAway(gate);
    std::optional<WaitingCall> first(std::in_place, gate);
    ASSERT_TRUE(first->IsAnswered());
    EXPECT_TRUE(first->IsInside());
    const WaitingCall second(gate);
    EXPECT_FALSE(second.IsAnswered(moment));
    first.reset();
    EXPECT_TRUE(second.IsAnswered());
    EXPECT_TRUE(second.IsInside());
}

}  // namespace
