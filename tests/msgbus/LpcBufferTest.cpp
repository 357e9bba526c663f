// The buffer in which exports return text. Its text is allocated by the bridge's runtime; these tests may allocate it
// themselves because program and bridge link the same msvcrt.dll, and so share one heap.
#include <windows.h>

#include <gtest/gtest.h>
#include <malloc.h>

#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <string>
#include <string_view>

#include "VsMsgbus/LpcBuffer.h"
#include "support/OnPurpose.h"

using VsKitMsgbus::lpc_buffer;
using VsKitMsgbus::TakeNarrowText;
using VsKitMsgbus::TakeWideText;

namespace {

constexpr char leftAlone[] = "the checking bridge frees no text that it has not made";

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
    if (IsCheckingBridge()) {
        GTEST_SKIP() << leftAlone;
    }
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
    if (IsCheckingBridge()) {
        GTEST_SKIP() << leftAlone;
    }
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

// A buffer that holds a text, and what becomes of both.
class TakenText : public testing::Test {
protected:
    void SetUp() override {
        if (IsCheckingBridge()) {
            GTEST_SKIP() << leftAlone;
        }
    }
    template <class Character>
    void Fill(uint32_t kind, std::basic_string_view<Character> text) {
        const size_t size = text.size() * sizeof(Character);
        block = std::calloc(1, size + sizeof(Character));
        std::memcpy(block, text.data(), size);
        buffer.kind = kind;
        buffer.length = text.size();
        buffer.data = block;
        ASSERT_TRUE(IsAllocated(block));
    }
    void ExpectFreed() const {
        EXPECT_FALSE(IsAllocated(block));
        ExpectEmpty(buffer);
    }

    lpc_buffer buffer;
    void* block = nullptr;
};

TEST_F(TakenText, IsAllOfItAndTheBufferEmptyAfterwards) {
    constexpr std::wstring_view wide(L"a\0\u00DC", 3);
    Fill(lpc_buffer::WideText, wide);
    EXPECT_EQ(TakeWideText(buffer), wide);
    ExpectFreed();
    constexpr std::string_view narrow("a\0\xC3\x9C", 4);
    Fill(lpc_buffer::NarrowText, narrow);
    EXPECT_EQ(TakeNarrowText(buffer), narrow);
    ExpectFreed();
}

TEST_F(TakenText, ThatIsEmptyIsFreedToo) {
    Fill(lpc_buffer::WideText, std::wstring_view(L""));
    EXPECT_EQ(TakeWideText(buffer), L"");
    ExpectFreed();
    Fill(lpc_buffer::NarrowText, std::string_view(""));
    EXPECT_EQ(TakeNarrowText(buffer), "");
    ExpectFreed();
}

TEST_F(TakenText, OfAnEmptyBufferIsEmpty) {
    EXPECT_EQ(TakeWideText(buffer), L"");
    ExpectEmpty(buffer);
    EXPECT_EQ(TakeNarrowText(buffer), "");
    ExpectEmpty(buffer);
}

TEST_F(TakenText, OfAnotherKindIsEmptyAndWhatIsThereFreed) {
    for (const uint32_t kind : {2U, 3U, 0xFFFFFFFFU}) {
        Fill(kind, std::string_view("text"));
        EXPECT_EQ(TakeWideText(buffer), L"") << kind;
        ExpectFreed();
    }
    for (const uint32_t kind : {1U, 3U, 0xFFFFFFFFU}) {
        Fill(kind, std::wstring_view(L"text"));
        EXPECT_EQ(TakeNarrowText(buffer), "") << kind;
        ExpectFreed();
    }
}

TEST_F(TakenText, OfAKindWithoutATextIsEmpty) {
    buffer.kind = lpc_buffer::WideText;
    buffer.length = 7;
    EXPECT_EQ(TakeWideText(buffer), L"");
    ExpectEmpty(buffer);
    buffer.kind = lpc_buffer::NarrowText;
    buffer.length = 7;
    EXPECT_EQ(TakeNarrowText(buffer), "");
    ExpectEmpty(buffer);
}

TEST_F(TakenText, ThatNoStringHoldsIsFreedAllTheSame) {
    Fill(lpc_buffer::NarrowText, std::string_view("text"));
    buffer.length = uint64_t{1} << 63;
    EXPECT_THROW(TakeNarrowText(buffer), std::length_error);
    ExpectFreed();
}

}  // namespace
