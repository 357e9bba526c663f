// The lines of a dump, one callback at a time.
#include "policy/CPolicyDump.h"

#include <gtest/gtest.h>

#include "support/FailingMemory.h"

namespace {

// The text as a module is given it.
std::wstring TextOf(CPolicyDump& dump) {
    VsKitMsgbus::lpc_buffer buffer{};
    dump.Store(buffer);
    EXPECT_EQ(buffer.kind, VsKitMsgbus::lpc_buffer::WideText);
    EXPECT_EQ(buffer.length, dump.Length());
    const std::wstring text(static_cast<const wchar_t*>(buffer.data));
    EXPECT_EQ(text.size(), buffer.length);
    buffer.Release();
    return text;
}

TEST(CPolicyDump, BeginsWithAnEmptyGoodText) {
    CPolicyDump dump;
    EXPECT_EQ(TextOf(dump), L"");
    EXPECT_TRUE(dump.IsGood());
}

TEST(CPolicyDump, WritesAContainer) {
    CPolicyDump dump;
    EXPECT_TRUE(dump.OnContainer(L"F", L"C", L"T", L"N"));
    EXPECT_EQ(TextOf(dump), L"    Container FeatureId[F] pCatagoryId[C] pTypeId[T] pName[N]\n");
}

TEST(CPolicyDump, WritesASettingsObject) {
    CPolicyDump dump;
    EXPECT_TRUE(dump.OnSettings(L"P", L"1", L"a"));
    EXPECT_EQ(TextOf(dump), L"      Settings Name=[P] pIntParam[1] pStrParam[a]\n");
}

TEST(CPolicyDump, WritesASectionWithoutItsReservedText) {
    CPolicyDump dump;
    EXPECT_TRUE(dump.OnSection(L"S", L"reserved"));
    EXPECT_EQ(TextOf(dump), L"         Section Name=[S]\n");
}

TEST(CPolicyDump, WritesASettingWithoutItsSection) {
    CPolicyDump dump;
    EXPECT_TRUE(dump.OnSetting(L"S", L"N", L"V"));
    EXPECT_EQ(TextOf(dump), L"             N=[V]\n");
}

TEST(CPolicyDump, WritesNullInEveryPlace) {
    CPolicyDump dump;
    EXPECT_TRUE(dump.OnContainer(nullptr, nullptr, nullptr, nullptr));
    EXPECT_TRUE(dump.OnSettings(nullptr, nullptr, nullptr));
    EXPECT_TRUE(dump.OnSection(nullptr, nullptr));
    EXPECT_TRUE(dump.OnSetting(nullptr, nullptr, nullptr));
    EXPECT_EQ(TextOf(dump),
              L"    Container FeatureId[<null>] pCatagoryId[<null>] pTypeId[<null>] pName[<null>]\n"
              L"      Settings Name=[<null>] pIntParam[<null>] pStrParam[<null>]\n"
              L"         Section Name=[<null>]\n"
              L"             <null>=[<null>]\n");
}

TEST(CPolicyDump, WithoutMemoryWritesNothingMoreAndGoesOn) {
    CPolicyDump dump;
    EXPECT_TRUE(dump.OnSection(L"before", nullptr));
    const std::wstring before = TextOf(dump);
    {
        const std::wstring longName(1000, L'x');
        const FailingMemory memory;
        EXPECT_TRUE(dump.OnSection(longName.c_str(), nullptr));
    }
    EXPECT_FALSE(dump.IsGood());
    EXPECT_TRUE(dump.OnContainer(L"F", L"C", L"T", L"N"));
    EXPECT_TRUE(dump.OnSettings(L"P", L"1", L"a"));
    EXPECT_TRUE(dump.OnSection(L"S", nullptr));
    EXPECT_TRUE(dump.OnSetting(L"S", L"N", L"V"));
    EXPECT_EQ(TextOf(dump).find(L"Container"), std::wstring::npos);
    EXPECT_TRUE(TextOf(dump).starts_with(before));
}

// Pieces of every length, and lines that are longer than any piece.
TEST(CPolicyDump, IsOneTextHoweverLongItIs) {
    CPolicyDump dump;
    std::wstring expected;
    for (size_t i = 0; i < 3000; ++i) {
        const std::wstring value(i % 500 == 499 ? 100000 : i % 97, L'v');
        EXPECT_TRUE(dump.OnSetting(L"S", L"N", value.c_str()));
        expected += L"             N=[" + value + L"]\n";
    }
    EXPECT_TRUE(dump.IsGood());
    EXPECT_TRUE(TextOf(dump) == expected);
}

}  // namespace
