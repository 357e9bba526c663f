// The one member function among the exports has another name in each C++ ABI.
#include <malloc.h>

#include <cstdlib>

#include "package/msvc/MicrosoftModuleTest.h"

namespace {

TEST(MicrosoftBuffer, IsReleasedThroughTheNameThatMicrosoftsCompilersGiveIt) {
    const MicrosoftModule module;
    VsKitMsgbus::lpc_buffer buffer;
    buffer.kind = VsKitMsgbus::lpc_buffer::NarrowText;
    buffer.length = 4;
    // Program and bridge link the same msvcrt.dll, and so share one heap.
    buffer.data = std::calloc(5, 1);
    const void* const block = buffer.data;
    const auto isAllocated = [block] {
        return ::HeapValidate(reinterpret_cast<HANDLE>(::_get_heap_handle()), 0, block) != 0;
    };
    ASSERT_TRUE(isAllocated());
    module.Call<decltype(MicrosoftModuleReleaseBuffer)>("MicrosoftModuleReleaseBuffer", &buffer);
    EXPECT_FALSE(isAllocated());
    EXPECT_EQ(buffer.kind, 0U);
    EXPECT_EQ(buffer.length, 0U);
    EXPECT_EQ(buffer.data, nullptr);
}

}  // namespace
