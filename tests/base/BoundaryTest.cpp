// The one place where what was thrown becomes an answer.
#include "base/Boundary.h"

#include <gtest/gtest.h>

#include <new>
#include <stdexcept>
#include <string>

#include "values/AgentException.h"

namespace {

using AgentException = corvane::ny::utils::exception;

template <class Thrown>
int AnswerOf(const Thrown& thrown) {
    return Guarded(-1, [&]() -> int { throw thrown; });
}

TEST(Boundary, AnswersWhatTheBodyAnswers) {
    EXPECT_EQ(Guarded(-1, [] { return 7; }), 7);
    EXPECT_EQ(Guarded(std::string("thrown"), [] { return std::string("answered"); }), "answered");
}

TEST(Boundary, AnswersForWhateverIsThrown) {
    EXPECT_EQ(AnswerOf(AgentException(705)), -1);
    EXPECT_EQ(AnswerOf(std::bad_alloc()), -1);
    EXPECT_EQ(AnswerOf(std::runtime_error("text")), -1);
    EXPECT_EQ(AnswerOf(42), -1);
}

TEST(Boundary, DropsWhatABodyWithoutAnAnswerThrows) {
    int runs = 0;
    Guarded([&] { ++runs; });
    Guarded([&] {
        ++runs;
        throw AgentException(705);
    });
    Guarded([&] {
        ++runs;
        throw std::bad_alloc();
    });
    Guarded([&] {
        ++runs;
        throw 42;
    });
    EXPECT_EQ(runs, 4);
}

// The agent exception's code, 900 for everything else, -1 when those two fail in turn.
template <class Body>
int32_t Tell(const Body& body) {
    return GuardedBy<AgentException>(
        -1, body, [](const AgentException& known) { return known.Code(); }, [] { return 900; });
}

TEST(Boundary, TellsTheKnownExceptionFromEveryOther) {
    EXPECT_EQ(Tell([] { return 7; }), 7);
    EXPECT_EQ(Tell([]() -> int32_t { throw AgentException(705); }), 705);
    EXPECT_EQ(Tell([]() -> int32_t { throw std::bad_alloc(); }), 900);
    EXPECT_EQ(Tell([]() -> int32_t { throw 42; }), 900);
}

TEST(Boundary, AnswersForAHandlerThatThrowsInItsTurn) {
    const auto throwAgain = [](const AgentException&) -> int { throw std::bad_alloc(); };
    const auto throwInt = []() -> int { throw 42; };
    EXPECT_EQ((GuardedBy<AgentException>(
                  -1, []() -> int { throw AgentException(705); }, throwAgain, throwInt)),
              -1);
    EXPECT_EQ((GuardedBy<AgentException>(
                  -1, []() -> int { throw 1; }, throwAgain, throwInt)),
              -1);
}

}  // namespace
