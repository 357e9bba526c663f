// An agent whose answers contradict themselves: success without a text, and lengths that no text has.
#include <gmock/gmock.h>

#include <iterator>
#include <new>
#include <optional>
#include <string>
#include <vector>

#include "VsMsgbus/Crypto.h"
#include "VsMsgbus/Information.h"
#include "support/AgentEnvironment.h"
#include "support/AgentFunctionsReplaced.h"
#include "support/Product.h"
#include "values/AgentTexts.h"

using VsKitMsgbus::lpc_buffer;

namespace {

size_t claimedLength = 0;

int32_t GiveNoText(ny_buffer_t* /*buffer*/, const char** text, size_t* length) {
    *text = nullptr;
    *length = claimedLength;
    return NY_OK;
}
int32_t GiveNoWideText(ny_wbuffer_t* /*buffer*/, const wchar_t** text, size_t* length) {
    *text = nullptr;
    *length = claimedLength;
    return NY_OK;
}
int32_t GiveNoBytes(ny_buffer_t* /*buffer*/, const unsigned char** data, size_t* size) {
    *data = nullptr;
    *size = claimedLength;
    return NY_OK;
}
int32_t GiveNoVariantText(ny_variant_t* /*variant*/, const char** text, size_t* length) {
    *text = nullptr;
    *length = claimedLength;
    return NY_OK;
}
int32_t GiveTooLongAText(ny_variant_t* /*variant*/, const char** text, size_t* length) {
    *text = "text";
    *length = SIZE_MAX;
    return NY_OK;
}

// The same text for every buffer: whole and with `claimedLength` at the first call, with no length of its own at the
// second; or with only its beginning left then.
constexpr char wholeText[] = "the whole text";
bool isFirstCall = true;

template <class Buffer, class Character>
int32_t GiveLessTheSecondTime(Buffer* /*buffer*/, const Character** text, size_t* length) {
    static const std::basic_string<Character> whole(std::begin(wholeText), std::end(wholeText) - 1);
    // Exactly so much memory that one character more is not there.
    static const std::vector<Character> beginning(whole.begin(), whole.begin() + 3);
    *text = isFirstCall ? whole.data() : beginning.data();
    *length = isFirstCall ? whole.size() : beginning.size();
    isFirstCall = !isFirstCall;
    return NY_OK;
}

template <class Buffer, class Character>
int32_t GiveTheLengthOnce(Buffer* /*buffer*/, const Character** text, size_t* length) {
    static const std::basic_string<Character> whole(std::begin(wholeText), std::end(wholeText) - 1);
    *text = whole.data();
    if (isFirstCall) {
        *length = claimedLength != 0 ? claimedLength : whole.size();
    }
    isFirstCall = !isFirstCall;
    return NY_OK;
}

class Contradiction : public AgentTest {
protected:
    // The agent is there with its functions replaced.
    void Enter() {
        environment.InstallAgent();
        ASSERT_EQ(ny_sim_set_information("AgentMode", "\"1\""), NY_OK);
        product.emplace("PRODUCT1000", nullptr, 0U);
    }
    void TearDown() override {
        product.reset();
        claimedLength = 0;
        isFirstCall = true;
        AgentTest::TearDown();
    }

    static constexpr unsigned char data[] = {1, 2, 3};
    AgentFunctionsReplaced functions;
    std::optional<Product> product;
};

TEST_F(Contradiction, OfALengthWithoutATextIsAnEmptyText) {
    functions.Replace("ny_buffer_get_string", &GiveNoText);
    functions.Replace("ny_wbuffer_get_string", &GiveNoWideText);
    Enter();
    for (const size_t length : {size_t{0}, size_t{5}, SIZE_MAX}) {
        claimedLength = length;
        EXPECT_EQ(NarrowFromWide(L"text"), "");
        EXPECT_EQ(WideFromNarrow("text"), L"");
    }
}

TEST_F(Contradiction, OfALengthWithoutBytesFailsWhatNeedsThem) {
    functions.Replace("ny_buffer_get_raw", &GiveNoBytes);
    Enter();
    claimedLength = 5;
    unsigned char out[4] = {9, 9, 9, 9};
    unsigned int size = 77;
    EXPECT_EQ(VsKitMsgbusEncryptData(data, sizeof data, out, &size, 0), -1);
    EXPECT_EQ(VsKitMsgbusDecryptData(data, sizeof data, out, &size, 0), -1);
    EXPECT_EQ(VsKitMsgbusHashBuffer(data, sizeof data, out, &size, 0), -1);
    EXPECT_EQ(size, 77U);
    EXPECT_THAT(out, testing::Each(9));
}

TEST_F(Contradiction, OfNoBytesAtAllIsAnEmptyResult) {
    functions.Replace("ny_buffer_get_raw", &GiveNoBytes);
    Enter();
    unsigned char out[4] = {9, 9, 9, 9};
    for (const auto run : {&VsKitMsgbusEncryptData, &VsKitMsgbusHashBuffer}) {
        unsigned int size = 77;
        EXPECT_EQ(run(data, sizeof data, out, &size, 0), 0);
        EXPECT_EQ(size, 0U);
    }
    EXPECT_THAT(out, testing::Each(9));
}

TEST_F(Contradiction, OfAValueWithoutATextIsAnEmptyOne) {
    functions.Replace("ny_variant_get_string", &GiveNoVariantText);
    Enter();
    claimedLength = 5;
    lpc_buffer out;
    EXPECT_EQ(VsKitMsgbusGetInfoByKeyName("AgentMode", &out), 0);
    EXPECT_EQ(out.kind, lpc_buffer::NarrowText);
    EXPECT_EQ(out.length, 0U);
    out.Release();
}

TEST_F(Contradiction, OfATextLongerThanAnyMemoryFails) {
    functions.Replace("ny_variant_get_string", &GiveTooLongAText);
    Enter();
    lpc_buffer out;
    EXPECT_EQ(VsKitMsgbusGetInfoByKeyName("AgentMode", &out), -1);
    EXPECT_EQ(out.kind, lpc_buffer::Empty);
    EXPECT_EQ(out.data, nullptr);
}

TEST_F(Contradiction, OfALengthThatTheTextLacksLaterReadsNoMoreThanIsThere) {
    functions.Replace("ny_buffer_get_string", &GiveLessTheSecondTime<ny_buffer_t, char>);
    functions.Replace("ny_wbuffer_get_string", &GiveLessTheSecondTime<ny_wbuffer_t, wchar_t>);
    Enter();
    EXPECT_EQ(NarrowFromWide(L"text"), "the");
    EXPECT_EQ(WideFromNarrow("text"), L"the");
}

TEST_F(Contradiction, OfALengthThatIsGivenOnceIsNone) {
    functions.Replace("ny_buffer_get_string", &GiveTheLengthOnce<ny_buffer_t, char>);
    functions.Replace("ny_wbuffer_get_string", &GiveTheLengthOnce<ny_wbuffer_t, wchar_t>);
    Enter();
    EXPECT_EQ(NarrowFromWide(L"text"), "the whole text");
    EXPECT_EQ(WideFromNarrow("text"), L"the whole text");
}

TEST_F(Contradiction, OfALengthThatNoMemoryHoldsIsAsWithoutMemory) {
    functions.Replace("ny_buffer_get_string", &GiveTheLengthOnce<ny_buffer_t, char>);
    functions.Replace("ny_wbuffer_get_string", &GiveTheLengthOnce<ny_wbuffer_t, wchar_t>);
    Enter();
    claimedLength = SIZE_MAX;
    EXPECT_THROW(NarrowFromWide(L"text"), std::bad_alloc);
    EXPECT_THROW(WideFromNarrow("text"), std::bad_alloc);
    lpc_buffer out;
    EXPECT_EQ(VsKitMsgbusGetInformation(VsMsgbusInformationAgentMode, &out), 0);
    EXPECT_EQ(out.data, nullptr);
}

}  // namespace
