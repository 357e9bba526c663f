// The one member function among the exports has another name in each C++ ABI.
#include <algorithm>
#include <array>

#include "abi/AbiModuleTest.h"

namespace {

// Whether any heap of the process has that block: each C runtime may have one of its own.
bool IsAllocated(const void* block) {
    std::array<HANDLE, 64> heaps{};
    const DWORD count = ::GetProcessHeaps(static_cast<DWORD>(heaps.size()), heaps.data());
    EXPECT_LE(count, heaps.size());
    return std::any_of(heaps.begin(), heaps.begin() + count,
                       [block](HANDLE heap) { return ::HeapValidate(heap, 0, block) != 0; });
}

class BufferTest : public AbiModuleTest {
protected:
    BufferTest() : AbiModuleTest("Properties", VsMsgbusServiceProperty) {}
};

TEST_F(BufferTest, IsReleasedByTheBridgeThatFilledIt) {
    ASSERT_EQ(ny_sim_set_all_information(R"({"AgentMode": "1"})"), NY_OK);
    VsKitMsgbus::lpc_buffer buffer;
    module.Call<decltype(ModuleReadKey)>("ModuleReadKey", "AgentMode", &buffer);
    const void* const block = buffer.data;
    ASSERT_NE(block, nullptr);
    ASSERT_TRUE(IsAllocated(block));
    module.Call<decltype(ModuleReleaseBuffer)>("ModuleReleaseBuffer", &buffer);
    EXPECT_FALSE(IsAllocated(block));
    EXPECT_EQ(buffer.kind, 0U);
    EXPECT_EQ(buffer.length, 0U);
    EXPECT_EQ(buffer.data, nullptr);
}

}  // namespace
