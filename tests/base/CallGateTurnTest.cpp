// Calls that wait for their turn at the gate.
#include <gmock/gmock.h>

#include <atomic>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "base/CallGate.h"
#include "base/CountedSleeps.h"
#include "support/Event.h"
#include "support/LineLog.h"

namespace {

// How long a test looks on while nothing should happen.
constexpr std::chrono::milliseconds moment{30};

// A call of a thread of its own that may have to wait for its turn.
class WaitingCall {
public:
    explicit WaitingCall(CallGate& gate, CallGate::Patience patience = nullptr)
        : thread([this, &gate, patience] {
              const CallGate::Call call(gate, CallGate::Admission::OneThreadAtATime, patience);
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

TEST(CallGateTurn, ComesWhenTheThreadInsideHasLeft) {
    CallGate gate;
    std::optional<CallGate::Call> own(std::in_place, gate, CallGate::Admission::OneThreadAtATime);
    const WaitingCall waiting(gate);
    EXPECT_FALSE(waiting.IsAnswered(moment));
    own.reset();
    EXPECT_TRUE(waiting.IsAnswered());
    EXPECT_TRUE(waiting.IsInside());
}

TEST(CallGateTurn, IsNotWaitedForByTheThreadInside) {
    CallGate gate;
    const CallGate::Call outer(gate, CallGate::Admission::OneThreadAtATime);
    const CallGate::Call inner(gate, CallGate::Admission::OneThreadAtATime);
    EXPECT_TRUE(outer);
    EXPECT_TRUE(inner);
}

TEST(CallGateTurn, IsNotWaitedForByCallsThatGoTogether) {
    CallGate gate;
    const WaitingCall first(gate);
    ASSERT_TRUE(first.IsAnswered());
    const CallGate::Call own(gate);
    EXPECT_TRUE(own);
}

TEST(CallGateTurn, DoesNotComeOnceTheGateIsClosed) {
    CallGate gate;
    const CallGate::Call own(gate);
    const WaitingCall waiting(gate);
    EXPECT_FALSE(waiting.IsAnswered(moment));
    gate.Close();
    EXPECT_TRUE(waiting.IsAnswered());
    EXPECT_FALSE(waiting.IsInside());
}

// The answer of the gate's patience, the same for every thread inside.
std::atomic<std::chrono::milliseconds> patience = CallGate::withoutLimit;
std::atomic<DWORD> threadAskedFor = 0;

std::chrono::milliseconds Patience(DWORD threadInside) noexcept {
    threadAskedFor = threadInside;
    return patience;
}

TEST(CallGateTurn, IsWaitedForAsLongAsThePatienceForTheThreadInsideLasts) {
    CallGate gate;
    const CallGate::Call own(gate);
    patience = CallGate::withoutLimit;
    const WaitingCall waiting(gate, Patience);
    EXPECT_FALSE(waiting.IsAnswered(4 * CallGate::patienceInterval));
    EXPECT_EQ(threadAskedFor, ::GetCurrentThreadId());
    patience = 2 * CallGate::patienceInterval;
    EXPECT_TRUE(waiting.IsAnswered());
    EXPECT_FALSE(waiting.IsInside());
}

TEST(CallGateTurn, IsGivenUpByAllWaitersAtOnce) {
    CallGate gate;
    const CallGate::Call own(gate);
    patience = CallGate::withoutLimit;
    CountedSleeps sleeps;
    const WaitingCall first(gate, Patience);
    ASSERT_TRUE(sleeps.WaitFor(1));
    const WaitingCall second(gate, Patience);
    EXPECT_FALSE(second.IsAnswered(moment));
    patience = CallGate::patienceInterval;
    EXPECT_TRUE(first.IsAnswered());
    EXPECT_TRUE(second.IsAnswered());
    EXPECT_FALSE(first.IsInside());
    EXPECT_FALSE(second.IsInside());
}

// The first one asks whether there is a reason to give up.
TEST(CallGateTurn, IsGivenUpByOneThatHasBecomeTheFirst) {
    CallGate gate;
    std::optional<CallGate::Call> own(std::in_place, gate);
    patience = CallGate::withoutLimit;
    CountedSleeps sleeps;
    WaitingCall first(gate, Patience);
    ASSERT_TRUE(sleeps.WaitFor(1));
    const WaitingCall second(gate, Patience);
    EXPECT_FALSE(second.IsAnswered(moment));
    own.reset();
    EXPECT_TRUE(first.IsAnswered());
    EXPECT_TRUE(first.IsInside());
    patience = CallGate::patienceInterval;
    EXPECT_TRUE(second.IsAnswered());
    EXPECT_FALSE(second.IsInside());
}

TEST(CallGateTurn, ComesToAWaiterThatIsPatientEnough) {
    CallGate gate;
    std::optional<CallGate::Call> own(std::in_place, gate);
    patience = callWaitLimit;
    const WaitingCall waiting(gate, Patience);
    EXPECT_FALSE(waiting.IsAnswered(4 * CallGate::patienceInterval));
    own.reset();
    EXPECT_TRUE(waiting.IsAnswered());
    EXPECT_TRUE(waiting.IsInside());
}

// So many threads come to the gate one after the other while the test is inside.
class QueueAtTheGate {
public:
    explicit QueueAtTheGate(size_t size) : own(std::in_place, gate, CallGate::Admission::OneThreadAtATime) {
        for (size_t i = 0; i < size; ++i) {
            threads.emplace_back([this, i] {
                const CallGate::Call call(gate, CallGate::Admission::OneThreadAtATime);
                turns.Add(call ? std::to_string(i) : "turned away");
                mayLeave.Wait();
            });
            EXPECT_TRUE(sleeps.WaitFor(i + 1));
        }
    }
    ~QueueAtTheGate() { Dissolve(); }

    void GiveFirstTurn() { own.reset(); }
    void Dissolve() {
        own.reset();
        mayLeave.Set();
        for (std::thread& thread : threads) {
            thread.join();
        }
        threads.clear();
    }

    LineLog turns;
    CountedSleeps sleeps;

private:
    CallGate gate;
    std::optional<CallGate::Call> own;
    Event mayLeave;
    std::vector<std::thread> threads;
};

TEST(CallGateTurn, ComesInTheOrderOfArrival) {
    constexpr size_t size = 50;
    QueueAtTheGate queue(size);
    queue.Dissolve();
    std::vector<std::string> inOrder;
    for (size_t i = 0; i < size; ++i) {
        inOrder.push_back(std::to_string(i));
    }
    EXPECT_THAT(queue.turns.Lines(), testing::ElementsAreArray(inOrder));
}

// A thread that is woken when it is another's turn falls asleep once more, which this test counts.
TEST(CallGateTurn, WakesOneThread) {
    constexpr size_t size = 50;
    QueueAtTheGate queue(size);
    queue.GiveFirstTurn();
    EXPECT_TRUE(queue.turns.WaitForSize(1));
    EXPECT_FALSE(queue.sleeps.WaitFor(2 * size - 1, 5 * moment));
    // Now and then a thread finds the gate's lock taken and sleeps for that: hence not exactly one sleep for each.
    queue.Dissolve();
    EXPECT_LT(queue.sleeps.Count(), 5 * size);
}

// Neither is the other's turn, and neither could leave before it comes.
TEST(CallGateTurn, OfAThreadThatIsInsideAlreadyComesBeforeThoseThatAreNot) {
    CallGate gate;
    std::optional<CallGate::Call> own(std::in_place, gate);
    CountedSleeps sleeps;
    const WaitingCall outside(gate);
    EXPECT_TRUE(sleeps.WaitFor(1));
    Event isThere;
    Event mayLeave;
    std::thread inside([&] {
        const CallGate::Call together(gate);
        isThere.Set();
        const CallGate::Call alone(gate, CallGate::Admission::OneThreadAtATime);
        EXPECT_TRUE(alone);
        EXPECT_TRUE(mayLeave.Wait());
    });
    EXPECT_TRUE(isThere.Wait());
    EXPECT_TRUE(sleeps.WaitFor(2));
    own.reset();
    EXPECT_FALSE(outside.IsAnswered(moment));
    mayLeave.Set();
    inside.join();
    EXPECT_TRUE(outside.IsAnswered());
    EXPECT_TRUE(outside.IsInside());
}

}  // namespace
