// The gate that counts the threads inside another party's code.
#include "base/CallGate.h"

#include <gtest/gtest.h>

#include <optional>
#include <thread>

#include "support/Event.h"

namespace {

using namespace std::chrono_literals;

// A call of a thread of its own, from construction until Leave or the end.
class CallElsewhere {
public:
    explicit CallElsewhere(CallGate& gate)
        : thread([this, &gate] {
              const CallGate::Call call(gate);
              isInside = static_cast<bool>(call);
              entered.Set();
              leave.Wait();
          }) {
        EXPECT_TRUE(entered.Wait());
    }
    ~CallElsewhere() { Leave(); }

    void Leave() {
        leave.Set();
        if (thread.joinable()) {
            thread.join();
        }
    }

    bool IsInside() const { return isInside; }

private:
    Event entered;
    Event leave;
    std::atomic<bool> isInside = false;
    std::thread thread;
};

TEST(CallGate, LetsCallsInUntilItIsClosed) {
    CallGate gate;
    EXPECT_FALSE(gate.IsClosed());
    const CallGate::Call before(gate);
    EXPECT_TRUE(before);
    gate.Close();
    gate.Close();
    EXPECT_TRUE(gate.IsClosed());
    EXPECT_TRUE(before);
    const CallGate::Call after(gate);
    EXPECT_FALSE(after);
    EXPECT_FALSE(CallElsewhere(gate).IsInside());
}

TEST(CallGate, KnowsWhetherTheCallingThreadIsInside) {
    CallGate gate;
    const CallElsewhere other(gate);
    EXPECT_FALSE(gate.IsInside(::GetCurrentThreadId()));
    {
        const CallGate::Call own(gate);
        EXPECT_TRUE(gate.IsInside(::GetCurrentThreadId()));
    }
    EXPECT_FALSE(gate.IsInside(::GetCurrentThreadId()));
}

TEST(CallGate, WithNoThreadInsideIsNotWaitedFor) {
    CallGate gate;
    EXPECT_TRUE(gate.WaitForOthers(0ms));
    { const CallGate::Call call(gate); }
    EXPECT_TRUE(gate.WaitForOthers(0ms));
}

TEST(CallGate, IsWaitedForUntilTheLastCallElsewhereHasEnded) {
    CallGate gate;
    CallElsewhere first(gate);
    CallElsewhere second(gate);
    gate.Close();
    Event waited;
    bool isEmpty = false;
    std::thread waiter([&] {
        isEmpty = gate.WaitForOthers(soon);
        waited.Set();
    });
    first.Leave();
    EXPECT_FALSE(waited.IsSet());
    EXPECT_FALSE(gate.WaitForOthers(0ms));
    second.Leave();
    EXPECT_TRUE(waited.Wait());
    waiter.join();
    EXPECT_TRUE(isEmpty);
}

TEST(CallGate, IsWaitedForNoLongerThanTheLimit) {
    CallGate gate;
    CallElsewhere call(gate);
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_FALSE(gate.WaitForOthers(30ms));
    EXPECT_GE(std::chrono::steady_clock::now() - begin, 25ms);
    call.Leave();
    EXPECT_TRUE(gate.WaitForOthers(0ms));
}

TEST(CallGate, IsNotWaitedForFromInside) {
    CallGate gate;
    const CallGate::Call own(gate);
    EXPECT_TRUE(gate.WaitForOthers(soon));
    CallElsewhere other(gate);
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_FALSE(gate.WaitForOthers(soon));
    EXPECT_LT(std::chrono::steady_clock::now() - begin, soon);
}

TEST(CallGate, IsNotWaitedForFromInsideOfTwoCallsOfOneThread) {
    CallGate gate;
    const CallGate::Call outer(gate);
    {
        const CallGate::Call inner(gate);
        EXPECT_TRUE(inner);
        EXPECT_TRUE(gate.WaitForOthers(soon));
    }
    CallElsewhere other(gate);
    EXPECT_FALSE(gate.WaitForOthers(soon));
    other.Leave();
    EXPECT_TRUE(gate.WaitForOthers(soon));
}

TEST(CallGate, KnowsItsCallsInWhateverOrderTheyEnd) {
    CallGate gate;
    std::optional<CallElsewhere> calls[3];
    for (auto& call : calls) {
        call.emplace(gate);
        EXPECT_TRUE(call->IsInside());
    }
    for (const size_t ended : {1U, 0U, 2U}) {
        EXPECT_FALSE(gate.WaitForOthers(0ms));
        calls[ended]->Leave();
    }
    EXPECT_TRUE(gate.WaitForOthers(0ms));
}

}  // namespace
