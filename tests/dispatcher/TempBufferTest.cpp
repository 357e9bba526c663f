// The scratch buffer, as modules call it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <span>

#include "VsMsgbus/ny_temp_buffer.h"

namespace {

using testing::Each;
using testing::ElementsAreArray;

std::span<unsigned char> Bytes(ny_temp_buffer_t& buffer) {
    return {static_cast<unsigned char*>(ny_temp_buffer_get(&buffer)), ny_temp_buffer_capacity(&buffer)};
}

std::span<unsigned char> InlineBytes(ny_temp_buffer_t& buffer) {
    return buffer.inlineStorage;
}

// Initialised, and uninitialised at the end.
class TempBuffer : public testing::Test {
protected:
    TempBuffer() {
        ny_temp_buffer_init(&buffer);
        ny_temp_buffer_init(&other);
    }
    ~TempBuffer() override {
        ny_temp_buffer_uninit(&buffer);
        ny_temp_buffer_uninit(&other);
    }

    static void ExpectFresh(ny_temp_buffer_t& fresh) {
        EXPECT_EQ(fresh.capacity, 256U);
        EXPECT_EQ(fresh.heap, nullptr);
        EXPECT_THAT(InlineBytes(fresh), Each(0));
    }

    ny_temp_buffer_t buffer;
    ny_temp_buffer_t other;
};

TEST_F(TempBuffer, IsLaidOutAsCapacityHeapAndInlineStorage) {
    EXPECT_EQ(offsetof(ny_temp_buffer_t, capacity), 0U);
    EXPECT_EQ(offsetof(ny_temp_buffer_t, heap), 8U);
    EXPECT_EQ(offsetof(ny_temp_buffer_t, inlineStorage), 16U);
    EXPECT_EQ(sizeof(ny_temp_buffer_t), 16U + 256U);
}

TEST_F(TempBuffer, InitSetsTheFreshStateWhateverWasThere) {
    ny_temp_buffer_t garbage;
    std::memset(&garbage, 0xCD, sizeof garbage);
    ny_temp_buffer_init(&garbage);
    ExpectFresh(garbage);
}

TEST_F(TempBuffer, ReserveUpToTheInlineSizeKeepsTheInlineStorageAndItsBytes) {
    std::memset(buffer.inlineStorage, 'a', 256);
    for (const size_t size : {size_t{0}, size_t{1}, size_t{256}}) {
        EXPECT_EQ(ny_temp_buffer_reserve(&buffer, size), 0U);
        EXPECT_EQ(ny_temp_buffer_get(&buffer), buffer.inlineStorage);
        EXPECT_EQ(ny_temp_buffer_capacity(&buffer), 256U);
    }
    EXPECT_THAT(Bytes(buffer), Each('a'));
}

TEST_F(TempBuffer, ReserveOfOneByteMoreGivesAZeroedHeapBlockOfExactlyThatSize) {
    std::memset(buffer.inlineStorage, 'a', 256);
    ASSERT_EQ(ny_temp_buffer_reserve(&buffer, 257), 0U);
    EXPECT_EQ(ny_temp_buffer_capacity(&buffer), 257U);
    EXPECT_NE(buffer.heap, nullptr);
    EXPECT_EQ(ny_temp_buffer_get(&buffer), buffer.heap);
    EXPECT_THAT(Bytes(buffer), Each(0));
}

TEST_F(TempBuffer, RecordsTheFunctionThatFreesTheBlockInTheInlineStorage) {
    ASSERT_EQ(ny_temp_buffer_reserve(&buffer, 257), 0U);
    void* recorded = nullptr;
    std::memcpy(&recorded, buffer.inlineStorage, sizeof recorded);
    EXPECT_NE(recorded, nullptr);
    EXPECT_THAT(InlineBytes(buffer).subspan(sizeof recorded), Each(0));
}

void* freedBlock = nullptr;

void NoteFreed(void* block) {
    freedBlock = block;
    std::free(block);
}

TEST_F(TempBuffer, FreesTheBlockWithTheRecordedFunction) {
    void (*const freeFunction)(void*) = &NoteFreed;
    for (const bool byUninit : {true, false}) {
        ASSERT_EQ(ny_temp_buffer_reserve(&buffer, 300), 0U);
        std::memcpy(buffer.inlineStorage, &freeFunction, sizeof freeFunction);
        void* const block = buffer.heap;
        freedBlock = nullptr;
        if (byUninit) {
            ny_temp_buffer_uninit(&buffer);
        } else {
            ASSERT_EQ(ny_temp_buffer_reserve(&buffer, 301), 0U);
        }
        EXPECT_EQ(freedBlock, block);
    }
}

TEST_F(TempBuffer, NeverShrinks) {
    ASSERT_EQ(ny_temp_buffer_reserve(&buffer, 1000), 0U);
    void* const block = ny_temp_buffer_get(&buffer);
    std::memset(block, 'b', 1000);
    EXPECT_EQ(ny_temp_buffer_reserve(&buffer, 300), 0U);
    EXPECT_EQ(ny_temp_buffer_reserve(&buffer, 1000), 0U);
    EXPECT_EQ(ny_temp_buffer_get(&buffer), block);
    EXPECT_EQ(ny_temp_buffer_capacity(&buffer), 1000U);
    EXPECT_THAT(Bytes(buffer), Each('b'));
}

TEST_F(TempBuffer, GrowingABlockGivesAZeroedOne) {
    ASSERT_EQ(ny_temp_buffer_reserve(&buffer, 300), 0U);
    std::memset(ny_temp_buffer_get(&buffer), 'b', 300);
    ASSERT_EQ(ny_temp_buffer_reserve(&buffer, 301), 0U);
    EXPECT_EQ(ny_temp_buffer_capacity(&buffer), 301U);
    EXPECT_THAT(Bytes(buffer), Each(0));
}

TEST_F(TempBuffer, AFailedAllocationLeavesTheBufferAsItWas) {
    std::memset(buffer.inlineStorage, 'a', 256);
    EXPECT_EQ(ny_temp_buffer_reserve(&buffer, SIZE_MAX), 4U);
    EXPECT_EQ(ny_temp_buffer_capacity(&buffer), 256U);
    EXPECT_EQ(ny_temp_buffer_get(&buffer), buffer.inlineStorage);
    EXPECT_THAT(Bytes(buffer), Each('a'));
    ASSERT_EQ(ny_temp_buffer_reserve(&other, 300), 0U);
    void* const block = other.heap;
    std::memset(block, 'b', 300);
    EXPECT_EQ(ny_temp_buffer_reserve(&other, SIZE_MAX), 4U);
    EXPECT_EQ(other.heap, block);
    EXPECT_EQ(ny_temp_buffer_capacity(&other), 300U);
    EXPECT_THAT(Bytes(other), Each('b'));
}

TEST_F(TempBuffer, CopiesInlineBytes) {
    std::memset(other.inlineStorage, 'c', 256);
    EXPECT_EQ(ny_temp_buffer_copy(&buffer, &other), 0U);
    EXPECT_EQ(ny_temp_buffer_get(&buffer), buffer.inlineStorage);
    EXPECT_THAT(Bytes(buffer), Each('c'));
}

TEST_F(TempBuffer, CopiesAHeapBlockIntoOneOfItsOwn) {
    ASSERT_EQ(ny_temp_buffer_reserve(&other, 400), 0U);
    std::memset(ny_temp_buffer_get(&other), 'd', 400);
    EXPECT_EQ(ny_temp_buffer_copy(&buffer, &other), 0U);
    EXPECT_EQ(ny_temp_buffer_capacity(&buffer), 400U);
    EXPECT_NE(buffer.heap, other.heap);
    EXPECT_THAT(Bytes(buffer), ElementsAreArray(Bytes(other)));
}

TEST_F(TempBuffer, ACopyTakesTheSourcesCapacityAlsoWhenItsOwnWasGreater) {
    ASSERT_EQ(ny_temp_buffer_reserve(&buffer, 1000), 0U);
    std::memset(other.inlineStorage, 'e', 256);
    EXPECT_EQ(ny_temp_buffer_copy(&buffer, &other), 0U);
    EXPECT_EQ(ny_temp_buffer_capacity(&buffer), 256U);
    EXPECT_EQ(buffer.heap, nullptr);
    EXPECT_THAT(Bytes(buffer), Each('e'));
}

TEST_F(TempBuffer, CopiedOntoItselfItStaysAsItIs) {
    ASSERT_EQ(ny_temp_buffer_reserve(&buffer, 300), 0U);
    std::memset(ny_temp_buffer_get(&buffer), 'f', 300);
    EXPECT_EQ(ny_temp_buffer_copy(&buffer, &buffer), 0U);
    EXPECT_EQ(ny_temp_buffer_capacity(&buffer), 300U);
    EXPECT_THAT(Bytes(buffer), Each('f'));
}

TEST_F(TempBuffer, ACopyThatFindsNoMemoryLeavesAFreshDestination) {
    ASSERT_EQ(ny_temp_buffer_reserve(&buffer, 300), 0U);
    ny_temp_buffer_t huge{};
    huge.capacity = SIZE_MAX;
    EXPECT_EQ(ny_temp_buffer_copy(&buffer, &huge), 4U);
    ExpectFresh(buffer);
}

TEST_F(TempBuffer, AddressOfReleasesToTheFreshStateAndTakesTheCalleesBlock) {
    ASSERT_EQ(ny_temp_buffer_reserve(&buffer, 300), 0U);
    void** const place = ny_temp_buffer_address_of(&buffer);
    EXPECT_EQ(place, &buffer.heap);
    ExpectFresh(buffer);
    void* const block = std::malloc(32);
    *place = block;
    EXPECT_EQ(ny_temp_buffer_get(&buffer), block);
    ny_temp_buffer_uninit(&buffer);
    EXPECT_EQ(ny_temp_buffer_get(&buffer), buffer.inlineStorage);
}

TEST_F(TempBuffer, UninitKeepsTheInlineBytes) {
    std::memset(buffer.inlineStorage, 'g', 256);
    ny_temp_buffer_uninit(&buffer);
    EXPECT_EQ(buffer.capacity, 256U);
    EXPECT_THAT(InlineBytes(buffer), Each('g'));
}

TEST_F(TempBuffer, UninitOfAHeapBlockGivesTheInlineStorageBackAndMayBeRepeated) {
    ASSERT_EQ(ny_temp_buffer_reserve(&buffer, 300), 0U);
    for (int i = 0; i < 2; ++i) {
        ny_temp_buffer_uninit(&buffer);
        EXPECT_EQ(buffer.capacity, 256U);
        EXPECT_EQ(buffer.heap, nullptr);
    }
}

TEST_F(TempBuffer, EveryFunctionAcceptsANullPointer) {
    ny_temp_buffer_init(nullptr);
    ny_temp_buffer_uninit(nullptr);
    EXPECT_EQ(ny_temp_buffer_reserve(nullptr, 1), 1U);
    EXPECT_EQ(ny_temp_buffer_get(nullptr), nullptr);
    EXPECT_EQ(ny_temp_buffer_capacity(nullptr), 0U);
    EXPECT_EQ(ny_temp_buffer_address_of(nullptr), nullptr);
    EXPECT_EQ(ny_temp_buffer_copy(nullptr, &buffer), 1U);
    EXPECT_EQ(ny_temp_buffer_copy(&buffer, nullptr), 1U);
}

}  // namespace
