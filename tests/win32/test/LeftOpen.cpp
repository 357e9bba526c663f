// No test leaves a handle open or a library loaded.
#include <gtest/gtest.h>

#include "win32_faults.h"

namespace {

class LeftOpenListener final : public testing::EmptyTestEventListener {
    void OnTestStart(const testing::TestInfo& /*test*/) override {
        handles = win32::OpenHandles();
        libraries = win32::LibraryReferences();
    }

    void OnTestEnd(const testing::TestInfo& /*test*/) override {
        EXPECT_EQ(win32::OpenHandles(), handles) << "handles are left open";
        EXPECT_EQ(win32::LibraryReferences(), libraries) << "libraries are left loaded";
    }

    size_t handles = 0;
    size_t libraries = 0;
};

[[maybe_unused]] const bool isListening = [] {
    testing::UnitTest::GetInstance()->listeners().Append(new LeftOpenListener);
    return true;
}();

}  // namespace
