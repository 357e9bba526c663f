// Letting a library go.
#include "dispatcher/DispatcherTest.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Unload : public DispatcherTest {
protected:
    void SetUp() override {
        DispatcherTest::SetUp();
        environment.InstallAgent();
    }

    uint32_t References() const { return dispatcher->grouper.members.at(0)->libraries.at(0)->references; }

    TestGroup<1> crypto{"crypto", "ny_client.dll", {"ny_crypto_name"}};
    TestGroup<1> property{"property", "ny_client.dll", {"ny_property_send"}};
    TestGroup<1> bus{"ny_msgbus", "ny_msgbus.dll", {"ny_msgbus_run"}};
    TestGroup<1> info{"ny_info", "ny_client.dll", {"ny_info_get"}};
    TestGroup<1> logger{"ny_logger", "ny_logger.dll", {"ny_log_v"}};
};

TEST_F(Unload, ClosesTheLibraryAndClearsBothTablesOfItsTwoGroups) {
    ASSERT_EQ(DispatcherLoad(crypto.Request()), NY_OK);
    ASSERT_EQ(DispatcherLoad(property.Request()), NY_OK);
    const HMODULE module = ModuleOf("ny_client.dll");
    log.Take();
    EXPECT_EQ(DispatcherUnload(agentSoftwareId, "ny_client.dll"), NY_OK);
    EXPECT_EQ(crypto.table.load(), nullptr);
    EXPECT_EQ(property.table.load(), nullptr);
    EXPECT_EQ(ModuleOf("ny_client.dll"), nullptr);
    EXPECT_THAT(log.Lines(), ElementsAre(Closes(module)));
    EXPECT_THAT(dispatcher->grouper.members.at(0)->libraries, IsEmpty());
}

TEST_F(Unload, SetsTheVersionVariableToZeroAndTheNextLoadStartsAfresh) {
    ASSERT_EQ(DispatcherLoad(bus.Request()), NY_OK);
    ASSERT_EQ(bus.version, 0x00050700U);
    EXPECT_EQ(DispatcherUnload(agentSoftwareId, "ny_msgbus.dll"), NY_OK);
    EXPECT_EQ(bus.version, 0U);
    EXPECT_EQ(DispatcherLoad(bus.Request()), NY_OK);
    EXPECT_NE(bus.table.load(), nullptr);
    EXPECT_EQ(bus.version, 0x00050700U);
    EXPECT_EQ(References(), 1U);
}

TEST_F(Unload, NeedsToBeCalledOnceHoweverManyGroupsWereLoaded) {
    ASSERT_EQ(DispatcherLoad(crypto.Request()), NY_OK);
    ASSERT_EQ(DispatcherLoad(property.Request()), NY_OK);
    ASSERT_EQ(DispatcherLoad(info.Request()), NY_OK);
    EXPECT_EQ(References(), 1U);
    EXPECT_EQ(DispatcherUnload(agentSoftwareId, "ny_client.dll"), NY_OK);
    EXPECT_EQ(ModuleOf("ny_client.dll"), nullptr);
}

TEST_F(Unload, OfALoadThatFoundItsTableTakesOneUseOnly) {
    ASSERT_EQ(DispatcherLoad(crypto.Request()), NY_OK);
    ASSERT_EQ(DispatcherLoad(crypto.Request()), NY_OK);
    EXPECT_EQ(References(), 2U);
    log.Take();
    EXPECT_EQ(DispatcherUnload(agentSoftwareId, "ny_client.dll"), NY_OK);
    EXPECT_NE(crypto.table.load(), nullptr);
    EXPECT_THAT(log.Lines(), IsEmpty());
    EXPECT_EQ(DispatcherUnload(agentSoftwareId, "ny_client.dll"), NY_OK);
    EXPECT_EQ(crypto.table.load(), nullptr);
}

TEST_F(Unload, ANewTableTakesBackOneUseOfALoadThatFoundItsTable) {
    ASSERT_EQ(DispatcherLoad(crypto.Request()), NY_OK);
    ASSERT_EQ(DispatcherLoad(crypto.Request()), NY_OK);
    ASSERT_EQ(DispatcherLoad(property.Request()), NY_OK);
    EXPECT_EQ(References(), 2U);
}

TEST_F(Unload, OfOneLibraryLeavesTheOthersInTheirOrder) {
    ASSERT_EQ(DispatcherLoad(bus.Request()), NY_OK);
    ASSERT_EQ(DispatcherLoad(crypto.Request()), NY_OK);
    ASSERT_EQ(DispatcherLoad(logger.Request()), NY_OK);
    EXPECT_EQ(DispatcherUnload(agentSoftwareId, "ny_msgbus.dll"), NY_OK);
    const auto& libraries = dispatcher->grouper.members.at(0)->libraries;
    ASSERT_EQ(libraries.size(), 2U);
    EXPECT_EQ(libraries[0]->fileName, "ny_client.dll");
    EXPECT_EQ(libraries[1]->fileName, "ny_logger.dll");
    EXPECT_NE(crypto.table.load(), nullptr);
    EXPECT_NE(logger.table.load(), nullptr);
}

TEST_F(Unload, OfALibraryThatIsNotOpenChangesNothing) {
    ASSERT_EQ(DispatcherLoad(crypto.Request()), NY_OK);
    for (const char* library : {"ny_msgbus.dll", "NY_CLIENT.DLL", "ny_client", "ny_client.dll.other"}) {
        EXPECT_EQ(DispatcherUnload(agentSoftwareId, library), NY_OK) << library;
    }
    EXPECT_EQ(References(), 1U);
    EXPECT_NE(crypto.table.load(), nullptr);
}

TEST_F(Unload, OfAnUnknownProductFails) {
    EXPECT_EQ(DispatcherUnload("PRODUCT1000", "ny_client.dll"), NY_LIBRARY_UNLOAD);
    EXPECT_EQ(dispatcherOperations.unload(dispatcher, "PRODUCT1000", "ny_client.dll"), NY_INVALID_ARGUMENT);
    ASSERT_EQ(DispatcherLoad(crypto.Request()), NY_OK);
    EXPECT_EQ(DispatcherUnload("rdxagent3000", "ny_client.dll"), NY_LIBRARY_UNLOAD);
}

TEST_F(Unload, OfMissingArgumentsIsAnswered) {
    EXPECT_EQ(DispatcherUnload(nullptr, "ny_client.dll"), NY_INVALID_ARGUMENT);
    EXPECT_EQ(DispatcherUnload(agentSoftwareId, nullptr), NY_INVALID_ARGUMENT);
    EXPECT_EQ(dispatcherOperations.unload(nullptr, agentSoftwareId, "ny_client.dll"), NY_INVALID_ARGUMENT);
    EXPECT_EQ(dispatcherOperations.unload(dispatcher, nullptr, "ny_client.dll"), NY_LIBRARY_UNLOAD);
    EXPECT_EQ(dispatcherOperations.unload(dispatcher, agentSoftwareId, nullptr), NY_LIBRARY_UNLOAD);
}

}  // namespace
