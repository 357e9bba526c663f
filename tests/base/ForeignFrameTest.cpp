// A frame takes exceptions that have the number of Microsoft's compiler.
#include <gtest/gtest.h>
#include <windows.h>

#include "base/ModuleCall.h"

namespace {

constexpr DWORD microsoftsException = 0xE06D7363;

// Another runtime raises such an exception for `throw;`: it alone knows the object.
TEST(ForeignFrame, TakesAnExceptionThatDoesNotSayWhatWasThrown) {
    EXPECT_THROW(CallModule([] { ::RaiseException(microsoftsException, 0, 0, nullptr); }), ForeignException);
}

TEST(ForeignFrame, TakesAnExceptionOfAnUnknownVersion) {
    const ULONG_PTR information[] = {0x19930523, 8, 8, 8};
    EXPECT_THROW(CallModule([&] { ::RaiseException(microsoftsException, 0, 4, information); }), ForeignException);
}

}  // namespace
