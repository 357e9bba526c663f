// The exception of the C++ layer.
#include <gtest/gtest.h>

#include "vsmsgbus.hpp"

namespace {

TEST(LayerError, SaysWhatFailedWithWhichCodeAndWhatHelps) {
    const vsmsgbus::Error error("reading", 77, "Try again.");
    EXPECT_STREQ(error.what(), "reading failed with code 77: Try again.");
    EXPECT_EQ(error.Code(), 77);
    EXPECT_EQ(error.Doing(), "reading");
    EXPECT_EQ(error.Remedy(), "Try again.");
}

TEST(LayerError, LeavesOutWhatIsNotKnown) {
    EXPECT_STREQ(vsmsgbus::Error("reading", 0).what(), "reading failed");
    EXPECT_STREQ(vsmsgbus::Error("reading", -1).what(), "reading failed with code -1");
    EXPECT_STREQ(vsmsgbus::Error("reading", 0, "Try again.").what(), "reading failed: Try again.");
}

}  // namespace
