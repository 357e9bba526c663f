// Static objects when the library is unloaded, and when the process ends.
#include "base/NoDestroyAtExit.h"

#include <gtest/gtest.h>

#include <optional>

namespace {

struct CountsItsEnd {
    ~CountsItsEnd() { ++ended; }
    static inline int ended = 0;
};

class NoDestroyAtExitTest : public testing::Test {
protected:
    NoDestroyAtExitTest() { CountsItsEnd::ended = 0; }
    ~NoDestroyAtExitTest() override { isProcessEnding = false; }

    std::optional<NoDestroyAtExit<CountsItsEnd>> object{std::in_place};
};

TEST_F(NoDestroyAtExitTest, IsDestroyedWithItsLibrary) {
    EXPECT_EQ(object->operator->(), &**object);
    object.reset();
    EXPECT_EQ(CountsItsEnd::ended, 1);
}

TEST_F(NoDestroyAtExitTest, IsLeftAsItIsWhenTheProcessEnds) {
    isProcessEnding = true;
    object.reset();
    EXPECT_EQ(CountsItsEnd::ended, 0);
}

}  // namespace
