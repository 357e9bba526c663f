// Levels of the dispatcher that cannot be released, and arguments that only the levels themselves are given.
#include "dispatcher/DispatcherTest.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class MissingRelease : public DispatcherTest {
protected:
    void SetUp() override {
        DispatcherTest::SetUp();
        environment.InstallAgent();
    }

    // Nothing of the dispatcher released before is in the way of the next one.
    void ExpectAnother() {
        EXPECT_EQ(DispatcherLoad(crypto.Request()), NY_INVALID_ARGUMENT);
        ASSERT_EQ(DispatcherCreate(nullptr, &dispatcher), NY_OK);
        EXPECT_THAT(dispatcher->grouper.members, IsEmpty());
        EXPECT_EQ(DispatcherLoad(crypto.Request()), NY_OK);
        EXPECT_NE(crypto.table.load(), nullptr);
    }

    TestGroup<1> crypto{"crypto", "ny_client.dll", {"ny_crypto_name"}};
};

TEST_F(MissingRelease, OfADispatcherWithoutOperationsIsNoFailure) {
    dispatcher->operations = nullptr;
    ReleaseDispatcher();
    ExpectAnother();
}

TEST_F(MissingRelease, OfADispatcherIsNoFailure) {
    DispatcherOperations replaced = dispatcherOperations;
    replaced.deinit = nullptr;
    dispatcher->operations = &replaced;
    ReleaseDispatcher();
    ExpectAnother();
}

TEST_F(MissingRelease, OfAGrouperWithoutOperationsIsNoFailure) {
    dispatcher->grouper.operations = nullptr;
    ReleaseDispatcher();
    ExpectAnother();
}

TEST_F(MissingRelease, OfAGrouperIsNoFailure) {
    GrouperOperations replaced = grouperOperations;
    replaced.release = nullptr;
    dispatcher->grouper.operations = &replaced;
    ReleaseDispatcher();
    ExpectAnother();
}

TEST_F(MissingRelease, OfAMemberKeepsNoOtherFromItsOwn) {
    MemberOperations replaced = memberOperations;
    replaced.release = nullptr;
    Grouper& grouper = dispatcher->grouper;
    ASSERT_EQ(grouperOperations.add_member(grouper, "WITHOUT OPERATIONS"), NY_OK);
    ASSERT_EQ(grouperOperations.add_member(grouper, "WITHOUT RELEASE"), NY_OK);
    grouper.members.at(0)->operations = nullptr;
    grouper.members.at(1)->operations = &replaced;
    ASSERT_EQ(DispatcherLoad(crypto.Request()), NY_OK);
    const HMODULE library = ModuleOf("ny_client.dll");
    log.Take();
    ReleaseDispatcher();
    EXPECT_THAT(log.Lines(), ElementsAre(Closes(library)));
    EXPECT_EQ(crypto.table.load(), nullptr);
}

TEST_F(MissingRelease, OfALibraryThatIsNotOpenDoesNothing) {
    LibraryEntry entry("ny_client.dll");
    entry.Close(dispatcher->log);
    EXPECT_THAT(log.Lines(), IsEmpty());
}

TEST_F(MissingRelease, OfALibraryWithoutUsersLeavesIt) {
    ASSERT_EQ(DispatcherLoad(crypto.Request()), NY_OK);
    Member& member = *dispatcher->grouper.members.at(0);
    member.libraries.at(0)->references = 0;
    EXPECT_EQ(DispatcherUnload(agentSoftwareId, "ny_client.dll"), NY_OK);
    EXPECT_THAT(member.libraries, SizeIs(1));
    EXPECT_NE(crypto.table.load(), nullptr);
}

class LoadArguments : public MissingRelease {};

TEST_F(LoadArguments, AreLookedAtByTheDispatchersOwnLoadToo) {
    const auto load = [&](auto&& change) {
        LoadRequest request = crypto.Request();
        change(request);
        return dispatcherOperations.load(dispatcher, request);
    };
    EXPECT_EQ(dispatcherOperations.load(nullptr, crypto.Request()), NY_INVALID_ARGUMENT);
    EXPECT_EQ(load([](LoadRequest& request) { request.product = nullptr; }), NY_INVALID_ARGUMENT);
    EXPECT_EQ(load([](LoadRequest& request) { request.library = nullptr; }), NY_INVALID_ARGUMENT);
    EXPECT_EQ(load([](LoadRequest& request) { request.names = nullptr; }), NY_INVALID_ARGUMENT);
    EXPECT_EQ(load([](LoadRequest& request) { request.table = nullptr; }), NY_INVALID_ARGUMENT);
    EXPECT_EQ(load([](LoadRequest& request) { request.count = 0; }), NY_INVALID_ARGUMENT);
    EXPECT_THAT(log.Lines(), IsEmpty());
    EXPECT_EQ(load([](LoadRequest&) {}), NY_OK);
}

TEST_F(LoadArguments, WithoutAGroupGiveNoVersion) {
    crypto.group = nullptr;
    EXPECT_EQ(DispatcherLoad(crypto.Request()), NY_OK);
    EXPECT_EQ(crypto.version, 0U);
    EXPECT_THAT(log.Lines(), testing::Contains(NotFound(ModuleOf("ny_client.dll"), "_get_version")));
}

}  // namespace
