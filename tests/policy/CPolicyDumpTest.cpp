// The lines of a dump, one callback at a time.
#include "policy/CPolicyDump.h"

#include <gtest/gtest.h>

#include "support/FailingMemory.h"

namespace {

TEST(PolicyDump, BeginsWithAnEmptyGoodText) {
    const CPolicyDump dump;
    EXPECT_EQ(dump.Text().Text(), L"");
    EXPECT_TRUE(dump.Text().IsGood());
}

TEST(PolicyDump, WritesAContainer) {
    CPolicyDump dump;
    EXPECT_TRUE(dump.OnContainer(L"F", L"C", L"T", L"N"));
    EXPECT_EQ(dump.Text().Text(), L"    Container FeatureId[F] pCatagoryId[C] pTypeId[T] pName[N]\n");
}

TEST(PolicyDump, WritesASettingsObject) {
    CPolicyDump dump;
    EXPECT_TRUE(dump.OnSettings(L"P", L"1", L"a"));
    EXPECT_EQ(dump.Text().Text(), L"      Settings Name=[P] pIntParam[1] pStrParam[a]\n");
}

TEST(PolicyDump, WritesASectionWithoutItsReservedText) {
    CPolicyDump dump;
    EXPECT_TRUE(dump.OnSection(L"S", L"reserved"));
    EXPECT_EQ(dump.Text().Text(), L"         Section Name=[S]\n");
}

TEST(PolicyDump, WritesASettingWithoutItsSection) {
    CPolicyDump dump;
    EXPECT_TRUE(dump.OnSetting(L"S", L"N", L"V"));
    EXPECT_EQ(dump.Text().Text(), L"             N=[V]\n");
}

TEST(PolicyDump, WritesNullInEveryPlace) {
    CPolicyDump dump;
    EXPECT_TRUE(dump.OnContainer(nullptr, nullptr, nullptr, nullptr));
    EXPECT_TRUE(dump.OnSettings(nullptr, nullptr, nullptr));
    EXPECT_TRUE(dump.OnSection(nullptr, nullptr));
    EXPECT_TRUE(dump.OnSetting(nullptr, nullptr, nullptr));
    EXPECT_EQ(dump.Text().Text(),
              L"    Container FeatureId[<null>] pCatagoryId[<null>] pTypeId[<null>] pName[<null>]\n"
              L"      Settings Name=[<null>] pIntParam[<null>] pStrParam[<null>]\n"
              L"         Section Name=[<null>]\n"
              L"             <null>=[<null>]\n");
}

TEST(PolicyDump, WithoutMemoryWritesNothingMoreAndGoesOn) {
    CPolicyDump dump;
    EXPECT_TRUE(dump.OnSection(L"before", nullptr));
    const std::wstring before = dump.Text().Text();
    {
        const std::wstring longName(1000, L'x');
        const FailingMemory memory;
        EXPECT_TRUE(dump.OnSection(longName.c_str(), nullptr));
    }
    EXPECT_FALSE(dump.Text().IsGood());
    EXPECT_TRUE(dump.OnContainer(L"F", L"C", L"T", L"N"));
    EXPECT_TRUE(dump.OnSettings(L"P", L"1", L"a"));
    EXPECT_TRUE(dump.OnSection(L"S", nullptr));
    EXPECT_TRUE(dump.OnSetting(L"S", L"N", L"V"));
    EXPECT_EQ(dump.Text().Text().find(L"Container"), std::wstring::npos);
    EXPECT_TRUE(dump.Text().Text().starts_with(before));
}

}  // namespace
