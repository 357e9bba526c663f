// Levels of the dispatcher whose operations are missing, empty or failing.
#include "dispatcher/DispatcherTest.h"

namespace {

using testing::ElementsAre;

class Operations : public DispatcherTest {
protected:
    void SetUp() override {
        DispatcherTest::SetUp();
        environment.InstallAgent();
    }

    // A load that goes well up to the member's operations, which the test has replaced. The member is there already.
    void LoadWith(const MemberOperations* replaced) {
        ASSERT_EQ(DispatcherLoad(property.Request()), NY_OK);
        dispatcher->grouper.members.at(0)->operations = replaced;
        log.Take();
        EXPECT_EQ(DispatcherLoad(crypto.Request()), NY_LIBRARY_LOAD);
        EXPECT_EQ(crypto.table.load(), nullptr);
        dispatcher->grouper.members.at(0)->operations = &memberOperations;
    }

    void LoadWith(const GrouperOperations* replaced) {
        dispatcher->grouper.operations = replaced;
        EXPECT_EQ(DispatcherLoad(crypto.Request()), NY_LIBRARY_LOAD);
        EXPECT_EQ(crypto.table.load(), nullptr);
        dispatcher->grouper.operations = &grouperOperations;
    }

    const std::string starts() const { return LoadStarts("crypto:RDXAGENT3000:ny_client.dll"); }

    GrouperOperations ofGrouper = grouperOperations;
    MemberOperations ofMember = memberOperations;
    TestGroup<1> crypto{"crypto", "ny_client.dll", {"ny_crypto_name"}};
    TestGroup<1> property{"property", "ny_client.dll", {"ny_property_send"}};
};

TEST_F(Operations, ADispatcherWithoutThemNeitherLoadsNorUnloads) {
    dispatcher->operations = nullptr;
    EXPECT_EQ(DispatcherLoad(crypto.Request()), NY_LIBRARY_LOAD);
    EXPECT_EQ(DispatcherUnload(agentSoftwareId, "ny_client.dll"), NY_LIBRARY_UNLOAD);
    dispatcher->operations = &dispatcherOperations;
}

TEST_F(Operations, ADispatcherWithEmptySlotsNeitherLoadsNorUnloads) {
    DispatcherOperations replaced = dispatcherOperations;
    replaced.load = nullptr;
    replaced.unload = nullptr;
    dispatcher->operations = &replaced;
    EXPECT_EQ(DispatcherLoad(crypto.Request()), NY_LIBRARY_LOAD);
    EXPECT_EQ(DispatcherUnload(agentSoftwareId, "ny_client.dll"), NY_LIBRARY_UNLOAD);
    dispatcher->operations = &dispatcherOperations;
}

TEST_F(Operations, WithoutAGroupersTheLoadEndsEarly) {
    LoadWith(static_cast<const GrouperOperations*>(nullptr));
    EXPECT_THAT(log.Lines(), ElementsAre(starts(), Failed("ny_grouper_add_member", 1)));
}

TEST_F(Operations, AnEmptyAddMemberEndsTheLoadEarly) {
    ofGrouper.add_member = nullptr;
    LoadWith(&ofGrouper);
    EXPECT_THAT(log.Lines(), ElementsAre(starts(), Failed("ny_grouper_add_member", 3)));
}

TEST_F(Operations, AFailingAddMemberEndsTheLoadEarlyWithItsCode) {
    ofGrouper.add_member = [](Grouper&, const char*) -> int32_t { return NY_OUT_OF_MEMORY; };
    LoadWith(&ofGrouper);
    EXPECT_THAT(log.Lines(), ElementsAre(starts(), Failed("ny_grouper_add_member", 4)));
}

TEST_F(Operations, AnEmptyFindMemberIsUnexpected) {
    ofGrouper.find_member = nullptr;
    LoadWith(&ofGrouper);
    EXPECT_THAT(log.Lines(), ElementsAre(starts(), Failed("ny_grouper_find_member for product", 3), LoadReturns(3)));
    dispatcher->grouper.operations = &ofGrouper;
    EXPECT_EQ(dispatcherOperations.unload(dispatcher, agentSoftwareId, "ny_client.dll"), NY_UNEXPECTED);
    dispatcher->grouper.operations = &grouperOperations;
}

TEST_F(Operations, AMemberThatIsNotFoundIsAnInvalidArgument) {
    ofGrouper.add_member = [](Grouper&, const char*) -> int32_t { return NY_OK; };
    LoadWith(&ofGrouper);
    EXPECT_THAT(log.Lines(), ElementsAre(starts(), Failed("ny_grouper_find_member for product", 1), LoadReturns(1)));
}

TEST_F(Operations, AMemberWithoutThemIsAnInvalidArgument) {
    LoadWith(static_cast<const MemberOperations*>(nullptr));
    EXPECT_THAT(log.Lines(), ElementsAre(starts(), Failed("ny_grouper_add_member library", 1), LoadReturns(1)));
}

TEST_F(Operations, AnEmptyAddLibraryIsUnexpected) {
    ofMember.add_library = nullptr;
    LoadWith(&ofMember);
    EXPECT_THAT(log.Lines(), ElementsAre(starts(), Failed("ny_grouper_add_member library", 3), LoadReturns(3)));
}

TEST_F(Operations, AnEmptyFindLibraryIsUnexpected) {
    ofMember.find_library = nullptr;
    LoadWith(&ofMember);
    EXPECT_THAT(log.Lines(), ElementsAre(starts(), Failed("ny_grouper_find_member library", 3), LoadReturns(3)));
}

TEST_F(Operations, ALibraryThatIsNotFoundIsAnInvalidArgument) {
    ofMember.find_library = [](Member&, const char*, LibraryEntry**) -> int32_t { return NY_INVALID_ARGUMENT; };
    LoadWith(&ofMember);
    EXPECT_THAT(log.Lines(), ElementsAre(starts(), Failed("ny_grouper_find_member library", 1), LoadReturns(1)));
}

TEST_F(Operations, AnEmptyLoadSymTableIsUnexpected) {
    ofMember.load_sym_table = nullptr;
    LoadWith(&ofMember);
    EXPECT_THAT(log.Lines(), ElementsAre(starts(), loadsTable, Failed("ny_grouper_load_sym_table", 3), LoadReturns(3)));
}

TEST_F(Operations, AFailingLoadSymTableGivesItsCode) {
    ofMember.load_sym_table = [](Member&, const char*, const char* const*, TablePointer*, size_t,
                                 const DispatcherLog&) -> int32_t { return NY_OUT_OF_MEMORY; };
    LoadWith(&ofMember);
    EXPECT_THAT(log.Lines(), ElementsAre(starts(), loadsTable, Failed("ny_grouper_load_sym_table", 4), LoadReturns(4)));
}

TEST_F(Operations, AnEmptyRemoveLibraryIsUnexpected) {
    ASSERT_EQ(DispatcherLoad(property.Request()), NY_OK);
    ofMember.remove_library = nullptr;
    Member& member = *dispatcher->grouper.members.at(0);
    member.operations = &ofMember;
    EXPECT_EQ(dispatcherOperations.unload(dispatcher, agentSoftwareId, "ny_client.dll"), NY_UNEXPECTED);
    EXPECT_EQ(DispatcherUnload(agentSoftwareId, "ny_client.dll"), NY_LIBRARY_UNLOAD);
    member.operations = &memberOperations;
}

TEST_F(Operations, OfAMemberLoadSymTableTakesWholeArgumentsOnly) {
    ASSERT_EQ(DispatcherLoad(property.Request()), NY_OK);
    Member& member = *dispatcher->grouper.members.at(0);
    const auto loadSymTable = [&](const char* library, const char* const* names, TablePointer* table, size_t count) {
        return memberOperations.load_sym_table(member, library, names, table, count, dispatcher->log);
    };
    const char* const* const names = crypto.names.data();
    EXPECT_EQ(loadSymTable(nullptr, names, &crypto.table, 1), NY_INVALID_ARGUMENT);
    EXPECT_EQ(loadSymTable("ny_client.dll", nullptr, &crypto.table, 1), NY_INVALID_ARGUMENT);
    EXPECT_EQ(loadSymTable("ny_client.dll", names, nullptr, 1), NY_INVALID_ARGUMENT);
    EXPECT_EQ(loadSymTable("ny_client.dll", names, &crypto.table, 0), NY_INVALID_ARGUMENT);
    EXPECT_EQ(loadSymTable("ny_logger.dll", names, &crypto.table, 1), NY_INVALID_ARGUMENT);
    EXPECT_EQ(crypto.table.load(), nullptr);
}

}  // namespace
