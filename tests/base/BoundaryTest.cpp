// Where what was thrown becomes an answer.
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

TEST(Boundary, DropsWhatABodyWithoutAnAnswerThrowsAndTellsOfIt) {
    int runs = 0;
    EXPECT_TRUE(Guarded([&] { ++runs; }));
    EXPECT_FALSE(Guarded([&] {
        ++runs;
        throw AgentException(705);
    }));
    EXPECT_FALSE(Guarded([&] {
        ++runs;
        throw std::bad_alloc();
    }));
    EXPECT_FALSE(Guarded([&] {
        ++runs;
        throw 42;
    }));
    EXPECT_EQ(runs, 4);
}

}  // namespace
