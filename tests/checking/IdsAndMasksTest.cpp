// The checking bridge's findings about ids and masks. In a test that says Named the mistake is found; in one that says
// Right there must be no finding, which TearDown checks.
#include "checking/CheckedTest.h"
#include "support/Enforcer.h"
#include "support/PolicyNotice.h"

namespace {

class CheckedIds : public CheckedTest {};
class CheckedMasks : public CheckedTest {};

TEST_F(CheckedIds, ThatDifferInLetterCaseAreNamed) {
    const Product product(id, &sink);
    const std::wstring other = L"checked" + wideId.substr(7);
    const Registration wrong(Narrow(other), collector);
    const Registration registration(id, collector);
    EXPECT_EQ(Found("ID-DIFFERS"), 1U);
    EXPECT_EQ(OnlyLine(),
              "VsMsgbus check [ID-DIFFERS] " + Narrow(other) +
                  ": VsKitMsgbusSetCollectProperties is given this id, which differs from \"" + id +
                  "\" in the case of letters or in blanks alone: ids are compared exactly, so these are two "
                  "products. Write the id in one place, and make the narrow and the wide form from it. "
                  "(thread , in VsKitMsgbusSetCollectProperties)");
}

TEST_F(CheckedIds, ThatDifferInABlankAreNamed) {
    const Product product(id, &sink);
    const Registration registration(id, collector);
    EXPECT_EQ(VsKitEnforceLocalPolicy((wideId + L" ").c_str()), 0);
    EXPECT_EQ(Found("ID-DIFFERS"), 1U);
}

TEST_F(CheckedIds, OfTheAgentsInOtherLettersAreNamed) {
    Enforcer enforcer;
    const EnforcerRegistration registration(id, enforcer);
    const Product product(id, &sink, VsMsgbusServicePolicy);
    const std::string other = "checked" + id.substr(7);
    PolicyNotice(id, other.c_str()).Answer();
    EXPECT_EQ(Found("ID-DIFFERS"), 1U);
    EXPECT_THAT(OnlyLine(), testing::StartsWith("VsMsgbus check [ID-DIFFERS] " + other +
                                                ": A call of the agent's is given this id, which differs from \"" + id +
                                                "\" in the case of letters or in blanks alone: "));
    PolicyNotice(id, id.c_str()).Answer();
    EXPECT_EQ(Found("ID-DIFFERS"), 1U);
}

TEST_F(CheckedIds, ThatAreTheSameAreNot) {
    const Product product(id, &sink);
    const Registration registration(id, collector);
    EXPECT_EQ(Ask(id), answered);
}

TEST_F(CheckedIds, ThatAreEmptyOrNotUtf8AreNamed) {
    { const Product product("", &sink); }
    EXPECT_EQ(Found("ID-UNUSABLE"), 1U);
    { const Product product(id + "\xFF", &sink); }
    EXPECT_EQ(Found("ID-UNUSABLE"), 2U);
}

TEST_F(CheckedMasks, WithoutAServiceAreNamed) {
    { const Product product(id, &sink, 0x400); }
    EXPECT_EQ(Found("MASK-EMPTY"), 1U);
    EXPECT_EQ(OnlyLine(),
              "VsMsgbus check [MASK-EMPTY] " + id +
                  ": it enters with the mask 1024, which names no service: the agent will never call it. "
                  "Give VsMsgbusEntry the VsMsgbusService bits of the interfaces that the product registers. "
                  "(thread , in VsMsgbusEntry)");
}

TEST_F(CheckedMasks, OfNothingAreNamedOfAProductWithAnInterface) {
    const Registration registration(id, collector);
    const Product product(id, &sink, 0);
    EXPECT_EQ(Found("MASK-EMPTY"), 1U);
}

TEST_F(CheckedMasks, OfNothingAreRightForAProductThatOnlyAsks) {
    const Product product(id, &sink, 0);
    EXPECT_TRUE(product.IsEntered());
}

TEST_F(CheckedMasks, WithABitTooFewOrTooManyAreNamedOnceTheAgentIsThere) {
    const Product right(id + "right", &sink);
    const Registration rightOne(id + "right", collector);
    const Product wrong(id, &sink, VsMsgbusServicePolicy);
    CheckSoonAfterTheNextChange();
    const Registration wrongOne(id, collector);
    EXPECT_TRUE(WaitUntil([&] { return Found("INTERFACE-MISSING") != 0 && Found("MASK-MISSING") != 0; }));
    EXPECT_THAT(file.Text(), testing::HasSubstr(
                                 "VsMsgbus check [MASK-MISSING] " + id +
                                 ": its collector is registered, but it entered without VsMsgbusServiceProperty (mask "
                                 "0x1000): the agent will never ask it. Add the bit to the mask of VsMsgbusEntry. ("));
    EXPECT_THAT(file.Text(), testing::HasSubstr("VsMsgbus check [INTERFACE-MISSING] " + id +
                                                ": it entered with VsMsgbusServicePolicy, but has no policy enforcer "
                                                "registered: the agent asks it and gets nothing. Call "
                                                "VsKitMsgbusSetEnforcePolicy, or take the bit out of the mask of "
                                                "VsMsgbusEntry. ("));
}

TEST_F(CheckedIds, OfARegistrationThatNoProductEntersWithAreNamedOnceTheAgentIsThere) {
    const Registration registration(id, collector);
    const Product product(id, &sink);
    CheckSoonAfterTheNextChange();
    const Registration mistyped(id + "_", collector);
    EXPECT_TRUE(WaitUntil([&] { return Found("NEVER-ENTERED") != 0; }));
    EXPECT_THAT(file.Text(),
                testing::HasSubstr("VsMsgbus check [NEVER-ENTERED] " + id +
                                   "_: its collector is registered, but no product of that id has entered: the agent "
                                   "will never ask it. Give VsMsgbusEntry the id that the registration has: one in "
                                   "UTF-8, the other in UTF-16. ("));
}

TEST_F(CheckedIds, InTheirNarrowAndTheirWideFormAreTheSame) {
    const std::string narrow = id + "\u00c4";
    const Registration registration(narrow, collector);
    const Product product(narrow, &sink);
    EXPECT_EQ(Ask(narrow), answered);
}

}  // namespace
