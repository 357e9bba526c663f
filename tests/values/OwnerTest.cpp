// Owners of agent handles.
#include <type_traits>
#include <utility>

#include "support/KeptHandles.h"
#include "values/AgentTables.h"
#include "values/ValuesTest.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

static_assert(!std::is_copy_constructible_v<VariantOwner> && !std::is_copy_assignable_v<VariantOwner>);
static_assert(std::is_nothrow_move_constructible_v<VariantOwner> && std::is_nothrow_move_assignable_v<VariantOwner>);
static_assert(std::is_nothrow_destructible_v<VariantOwner>);

class Owner : public ValuesTest {
protected:
    void SetUp() override {
        ValuesTest::SetUp();
        environment.InstallAgent();
    }
};

TEST_F(Owner, ReleaseTheirHandleOnceWhenTheyGo) {
    EXPECT_THAT(CallsOf([] { const VariantOwner owner = FromJson("1"); }), ElementsAre("ny_variant_release"));
    EXPECT_EQ(ny_sim_live_handles(NY_SIM_ANY), 0U);
}

TEST_F(Owner, OfNothingReleaseNothing) {
    EXPECT_THAT(CallsOf([] {
                    VariantOwner owner;
                    EXPECT_FALSE(owner);
                    EXPECT_EQ(owner.Get(), nullptr);
                    owner.Reset();
                    const BufferOwner buffer;
                    const TableOwner table;
                    const ArrayOwner array;
                }),
                IsEmpty());
}

TEST_F(Owner, ReleaseEachKindWithItsOwnFunction) {
    VariantOwner variant = FromJson(R"({"key": "value"})");
    TableOwner table = AgentTables().FromVariant(variant.Get());
    ArrayOwner array = AgentTables().Keys(table.Get());
    EXPECT_THAT(CallsOf([&] { array.Reset(); }), ElementsAre("ny_array_release"));
    EXPECT_THAT(CallsOf([&] { table.Reset(); }), ElementsAre("ny_table_release"));
    EXPECT_THAT(CallsOf([&] { variant.Reset(); }), ElementsAre("ny_variant_release"));
    EXPECT_EQ(ny_sim_live_handles(NY_SIM_ANY), 0U);
}

TEST_F(Owner, ThatWereResetAreEmptyAndReleaseNoMore) {
    VariantOwner owner = FromJson("1");
    EXPECT_TRUE(owner);
    owner.Reset();
    EXPECT_FALSE(owner);
    EXPECT_THAT(CallsOf([&] { owner.Reset(); }), IsEmpty());
}

TEST_F(Owner, PassTheirHandleOnWhenMoved) {
    VariantOwner first = FromJson("1");
    ny_variant_t* const handle = first.Get();
    EXPECT_THAT(CallsOf([&] {
                    VariantOwner second = std::move(first);
                    EXPECT_EQ(second.Get(), handle);
                    EXPECT_EQ(first.Get(), nullptr);
                    VariantOwner third;
                    third = std::move(second);
                    EXPECT_EQ(third.Get(), handle);
                    EXPECT_EQ(second.Get(), nullptr);
                }),
                ElementsAre("ny_variant_release"));
}

TEST_F(Owner, ReleaseWhatTheyHeldWhenAnotherIsMovedIntoThem) {
    VariantOwner first = FromJson("1");
    VariantOwner second = FromJson("2");
    ny_variant_t* const handle = second.Get();
    EXPECT_THAT(CallsOf([&] { first = std::move(second); }), ElementsAre("ny_variant_release"));
    EXPECT_EQ(first.Get(), handle);
    EXPECT_EQ(ny_sim_live_handles(NY_SIM_VARIANT), 1U);
}

TEST_F(Owner, KeepTheirHandleWhenMovedIntoThemselves) {
    VariantOwner owner = FromJson("1");
    VariantOwner& itself = owner;
    EXPECT_THAT(CallsOf([&] { owner = std::move(itself); }), IsEmpty());
    EXPECT_TRUE(owner);
}

TEST_F(Owner, AreEmptiedBeforeAnAgentCallFillsThem) {
    VariantOwner owner = FromJson("1");
    ny_variant_t** place = nullptr;
    EXPECT_THAT(CallsOf([&] { place = owner.Out(); }), ElementsAre("ny_variant_release"));
    EXPECT_EQ(*place, nullptr);
    EXPECT_EQ(ny_sim_variant_from_json("2", place), NY_OK);
    EXPECT_EQ(owner.Get(), *place);
}

TEST_F(Owner, ForgetAHandleThatTheAgentRefusesToTakeBack) {
    KeptHandles kept;
    VariantOwner owner = FromJson("1");
    ASSERT_EQ(ny_sim_fail_call("ny_variant_release", 1, 66, NY_SIM_ONCE), NY_OK);
    owner.Reset();
    EXPECT_FALSE(owner);
    EXPECT_THAT(CallsOf([&] { owner.Reset(); }), IsEmpty());
    EXPECT_EQ(kept.Release(), 1U);
}

TEST_F(Owner, GiveTheirHandleToTheLibraryThatMadeItWhenThatWasClosedMeanwhile) {
    const auto inUse = LibrariesInUse::Share();
    VariantOwner owner = FromJson("1");
    const std::string path = environment.Installer().CurrentFolder().string() + "\\ny_variant.dll";
    DispatcherRelease(std::exchange(dispatcher, nullptr));
    environment.UpgradeAgent("5.7.1");
    ASSERT_EQ(DispatcherCreate(nullptr, &dispatcher), NY_OK);
    const VariantOwner other = FromJson("2");
    EXPECT_NE(::GetModuleHandleA(path.c_str()), nullptr);
    EXPECT_THAT(CallsOf([&] { owner.Reset(); }), ElementsAre("ny_variant_release"));
    EXPECT_FALSE(owner);
}

// The library that is open by then has the release function, but it is not the one that the caller is inside of.
TEST_F(Owner, TakeNothingFromALibraryThatWasClosed) {
    { const VariantOwner opensTheLibrary = FromJson("1"); }
    const auto inUse = LibrariesInUse::Share();
    VariantOwner owner;
    owner.Out(inUse.get());
    DispatcherRelease(std::exchange(dispatcher, nullptr));
    ASSERT_EQ(DispatcherCreate(nullptr, &dispatcher), NY_OK);
    EXPECT_EQ(CodeOf([&] { owner.Out(inUse.get()); }), NY_FUNCTION_MISSING);
    EXPECT_NO_THROW(owner.Out());
}

}  // namespace
