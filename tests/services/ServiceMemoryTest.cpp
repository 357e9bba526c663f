// The information exports when memory runs out, and the buffer that they fill.
#include <gmock/gmock.h>

#include <cstdint>
#include <new>
#include <optional>
#include <string>

#include "VsMsgbus/Crypto.h"
#include "VsMsgbus/Entry.h"
#include "VsMsgbus/Information.h"
#include "msgbus/lpc_buffer.h"
#include "support/AgentEnvironment.h"
#include "support/FailingMemory.h"
#include "support/Product.h"

using VsKitMsgbus::lpc_buffer;
using VsKitMsgbus::StoreText;

namespace {

void ExpectEmpty(const lpc_buffer& buffer) {
    EXPECT_EQ(buffer.kind, 0U);
    EXPECT_EQ(buffer.length, 0U);
    EXPECT_EQ(buffer.data, nullptr);
}

TEST(StoredText, TakesThePlaceOfTheOneBefore) {
    lpc_buffer buffer;
    EXPECT_TRUE(StoreText(buffer, std::wstring_view(L"wide\0text", 9)));
    EXPECT_EQ(buffer.kind, 1U);
    EXPECT_EQ(buffer.length, 9U);
    EXPECT_EQ(std::wstring(static_cast<wchar_t*>(buffer.data), 10), std::wstring(L"wide\0text\0", 10));
    EXPECT_TRUE(StoreText(buffer, std::string_view("narrow")));
    EXPECT_EQ(buffer.kind, 2U);
    EXPECT_EQ(buffer.length, 6U);
    EXPECT_STREQ(static_cast<char*>(buffer.data), "narrow");
    buffer.Release();
}

TEST(StoredText, OfANullSourceIsAnEmptyTextOfItsKind) {
    lpc_buffer buffer;
    EXPECT_TRUE(StoreText(buffer, std::wstring_view()));
    EXPECT_EQ(buffer.kind, 1U);
    EXPECT_EQ(buffer.length, 0U);
    EXPECT_EQ(*static_cast<wchar_t*>(buffer.data), L'\0');
    EXPECT_TRUE(StoreText(buffer, std::string_view()));
    EXPECT_EQ(buffer.kind, 2U);
    EXPECT_EQ(*static_cast<char*>(buffer.data), '\0');
    buffer.Release();
}

// No source of that length is read: there is no memory for it.
TEST(StoredText, WithoutMemoryLeavesTheBufferEmpty) {
    lpc_buffer buffer;
    ASSERT_TRUE(StoreText(buffer, std::string_view("text")));
    EXPECT_FALSE(StoreText(buffer, std::string_view("x", SIZE_MAX / 4)));
    ExpectEmpty(buffer);
    ASSERT_TRUE(StoreText(buffer, std::wstring_view(L"text")));
    EXPECT_FALSE(StoreText(buffer, std::wstring_view(L"x", SIZE_MAX / 16)));
    ExpectEmpty(buffer);
}

class ServiceMemory : public AgentTest {
protected:
    void SetUp() override {
        environment.InstallAgent();
        product.emplace("PRODUCT1000", nullptr, 0U);
        const std::string longValue(1000, '1');
        ASSERT_EQ(ny_sim_set_information("AgentMode", ("\"" + longValue + "\"").c_str()), NY_OK);
        // The agent's functions are looked up at their first call, and are not there when that finds no memory.
        lpc_buffer out;
        ASSERT_EQ(VsKitMsgbusGetInformation(0, &out), 1);
        ASSERT_EQ(VsKitMsgbusGetInfoByKeyName("AgentMode", &out), 0);
        out.Release();
    }
    void TearDown() override {
        product.reset();
        AgentTest::TearDown();
    }

    // Has each allocation of `ask` fail in turn, until none is left that could: it succeeds then, and failed before.
    template <class Ask>
    static void FailEachAllocation(Ask&& ask) {
        size_t failed = 0;
        for (bool isDone = false; !isDone; ++failed) {
            ASSERT_LT(failed, 50U);
            const FailingMemory memory(failed, 1);
            isDone = ask();
        }
        EXPECT_GT(failed, 1U) << "nothing was allocated";
    }

    std::optional<Product> product;
};

TEST_F(ServiceMemory, ThatRunsOutEndsAQuestionByIndex) {
    FailEachAllocation([] {
        lpc_buffer out;
        const bool isDone = VsKitMsgbusGetInformation(0, &out) == 1;
        EXPECT_EQ(isDone, out.kind == lpc_buffer::WideText);
        EXPECT_EQ(out.length, isDone ? 1000U : 0U);
        out.Release();
        return isDone;
    });
}

TEST_F(ServiceMemory, ThatRunsOutEndsAQuestionByName) {
    FailEachAllocation([] {
        lpc_buffer out;
        const int32_t result = VsKitMsgbusGetInfoByKeyName("AgentMode", &out);
        EXPECT_TRUE(result == 0 || result == -1) << result;
        EXPECT_EQ(out.kind, result == 0 ? lpc_buffer::NarrowText : lpc_buffer::Empty);
        EXPECT_EQ(out.length, result == 0 ? 1000U : 0U);
        out.Release();
        return result == 0;
    });
}

TEST_F(ServiceMemory, ThatRunsOutEndsAQuestionForTheMode) {
    FailEachAllocation([] {
        unsigned int mode = 77;
        const bool isDone = VsKitMsgbusManagedMode(&mode) == 1;
        EXPECT_EQ(mode, 77U);
        return isDone;
    });
}

// Nothing is looked up yet. What cannot be is not there for this question alone.
TEST_F(ServiceMemory, ThatRunsOutAtTheFirstQuestionIsAnsweredAsAnAbsentAgent) {
    size_t failed = 0;
    for (bool isDone = false; !isDone; ++failed) {
        ASSERT_LT(failed, 50U);
        product.reset();
        product.emplace("PRODUCT1000", nullptr, 0U);
        lpc_buffer out;
        {
            const FailingMemory memory(failed, 1);
            const int32_t result = VsKitMsgbusGetInfoByKeyName("AgentMode", &out);
            EXPECT_TRUE(result == 0 || result == -1 || result == NY_FUNCTION_MISSING) << result;
            isDone = result == 0 && out.length == 1000U;
            EXPECT_TRUE(isDone || out.length == 0);
        }
        EXPECT_EQ(VsKitMsgbusGetInfoByKeyName("AgentMode", &out), 0);
        EXPECT_EQ(out.length, 1000U);
        out.Release();
    }
    EXPECT_GT(failed, 1U);
}

// The bridge's part of a crypto call allocates nothing.
TEST_F(ServiceMemory, IsNotNeededForCrypto) {
    unsigned char out[100] = {};
    unsigned int size = 0;
    const unsigned char data[] = {1, 2, 3};
    ASSERT_EQ(VsKitMsgbusEncryptData(data, sizeof data, out, &size, 0), 0);
    const FailingMemory memory;
    EXPECT_EQ(VsKitMsgbusDecryptData(out, size, out, &size, 0), 0);
    EXPECT_EQ(size, 3U);
}

}  // namespace
