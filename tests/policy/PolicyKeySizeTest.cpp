// A policy name whose size the registry cannot be told. No such text is made: the C library says that there is one.
#include <cwchar>
#include <limits>

#include "policy/PolicyKey.h"
#include "support/AgentEnvironment.h"
#include "support/PolicyValues.h"
#include "support/SystemFunction.h"

namespace {

using LengthFunction = size_t(const wchar_t* text);

size_t claimedSize = 0;

size_t ClaimSize(const wchar_t* /*text*/) {
    return claimedSize / sizeof(wchar_t) - 1;
}

class PolicyKeySize : public AgentTest {
protected:
    // Writes a text of which wcslen claims that it has that many bytes with its terminator; the answer of WriteText.
    static LSTATUS Write(const PolicyKey& key, size_t size) {
        claimedSize = size;
        auto* const length = reinterpret_cast<LengthFunction*>(
            reinterpret_cast<void*>(::GetProcAddress(::GetModuleHandleA("msvcrt.dll"), "wcslen")));
        const SystemFunction<LengthFunction> claiming(length, &ClaimSize);
        return key.WriteText(L"Value", L"text");
    }
};

TEST_F(PolicyKeySize, BeyondWhatTheRegistryCanBeToldIsRefused) {
    PolicyValues::MakeKey();
    PolicyKey key;
    ASSERT_EQ(key.Open(), ERROR_SUCCESS);
    constexpr size_t tooMuch = size_t{std::numeric_limits<DWORD>::max()} + 1;
    EXPECT_EQ(Write(key, tooMuch), ERROR_INVALID_DATA);
    EXPECT_EQ(PolicyValues::Read(L"Value"), PolicyValues::none);
    EXPECT_EQ(Write(key, sizeof L"text"), ERROR_SUCCESS);
    EXPECT_EQ(PolicyValues::Read(L"Value"), L"text");
}

}  // namespace
