// A log target hands lines to its sink, or drops them.
#include "dispatcher/DispatcherLog.h"

#include <gtest/gtest.h>

namespace {

int32_t Answer7(uint32_t /*severity*/, const char* /*module*/, const char* /*message*/, void* /*userData*/) {
    return 7;
}

TEST(LogTarget, WithoutASinkDropsTheLine) {
    EXPECT_EQ(LogTarget{}.Deliver(SeverityFailure, "module", "text"), 0);
}

TEST(LogTarget, ThatNobodyOwnsAnswersAsTheSink) {
    LogTarget target;
    target.sink = Answer7;
    EXPECT_EQ(target.Deliver(SeverityFailure, "module", "text"), 7);
}

TEST(LogTarget, WhoseOwnerIsGoneDropsTheLine) {
    LogTarget target;
    target.sink = Answer7;
    target.hasOwner = true;
    const auto owner = std::make_shared<int>();
    target.owner = owner;
    EXPECT_EQ(target.Deliver(SeverityFailure, "module", "text"), 7);
    target.owner.reset();
    EXPECT_EQ(target.Deliver(SeverityFailure, "module", "text"), 0);
}

}  // namespace
