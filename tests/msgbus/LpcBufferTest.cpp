// The buffer in which exports return text. Its text is allocated by the bridge's runtime; these tests may allocate it
// themselves because program and bridge link the same msvcrt.dll, and so share one heap.
#include <windows.h>

#include <gtest/gtest.h>
#include <malloc.h>

#include <cstdlib>
#include <cstring>
#include <cwchar>

#include "VsMsgbus/LpcBuffer.h"

using VsKitMsgbus::lpc_buffer;

namespace {

bool IsAllocated(const void* block) {
    return ::HeapValidate(reinterpret_cast<HANDLE>(::_get_heap_handle()), 0, block);
}

void* Allocate(const char* text) {
    void* const block = std::malloc(std::strlen(text) + 1);
    std::strcpy(static_cast<char*>(block), text);
    return block;
}

void ExpectEmpty(const lpc_buffer& buffer) {
    EXPECT_EQ(buffer.kind, 0U);
    EXPECT_EQ(buffer.length, 0U);
    EXPECT_EQ(buffer.data, nullptr);
}

TEST(LpcBuffer, HasItsThreeFieldsWhereTheContractSays) {
    EXPECT_EQ(offsetof(lpc_buffer, kind), 0U);
    EXPECT_EQ(offsetof(lpc_buffer, length), 8U);
    EXPECT_EQ(offsetof(lpc_buffer, data), 16U);
    EXPECT_EQ(sizeof(lpc_buffer), 24U);
}

TEST(LpcBuffer, ReleaseFreesATextOfAnyKind) {
    for (const uint32_t kind : {1U, 2U, 3U, 0xFFFFFFFFU}) {
        lpc_buffer buffer;
        buffer.kind = kind;
        buffer.length = 4;
        buffer.data = Allocate("text");
        void* const block = buffer.data;
        ASSERT_TRUE(IsAllocated(block));
        buffer.Release();
        EXPECT_FALSE(IsAllocated(block)) << kind;
        ExpectEmpty(buffer);
    }
}

TEST(LpcBuffer, ReleaseFreesNothingOfKindZeroAndForgetsItAllTheSame) {
    lpc_buffer buffer;
    buffer.length = 4;
    buffer.data = Allocate("text");
    void* const block = buffer.data;
    buffer.Release();
    ExpectEmpty(buffer);
    ASSERT_TRUE(IsAllocated(block));
    EXPECT_STREQ(static_cast<char*>(block), "text");
    std::free(block);
}

TEST(LpcBuffer, ReleaseOfAnEmptyOneDoesNothing) {
    lpc_buffer buffer;
    buffer.Release();
    ExpectEmpty(buffer);
}

TEST(LpcBuffer, ReleaseWithoutATextZeroesTheRest) {
    lpc_buffer buffer;
    buffer.kind = lpc_buffer::WideText;
    buffer.length = 7;
    buffer.Release();
    ExpectEmpty(buffer);
}

TEST(LpcBuffer, ReleaseTwiceFreesOnce) {
    lpc_buffer buffer;
    buffer.kind = lpc_buffer::NarrowText;
    buffer.data = Allocate("text");
    buffer.Release();
    // A second free of the first block could take this one away.
    void* const other = Allocate("other");
    buffer.Release();
    ExpectEmpty(buffer);
    EXPECT_TRUE(IsAllocated(other));
    std::free(other);
}

}  // namespace
