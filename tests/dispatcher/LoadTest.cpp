// Loading a group of agent functions: what is resolved, and every line that says so.
#include "dispatcher/DispatcherTest.h"
#include "support/AgentCalls.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Load : public DispatcherTest {
protected:
    TestGroup<3> client{
        "property", "ny_client.dll", {"ny_property_send", "ny_no_such_function", "ny_property_bag_add_property"}};
    TestGroup<1> crypto{"crypto", "ny_client.dll", {"ny_crypto_name"}};
    TestGroup<1> lowerCase{"crypto", "ny_client.dll", {"ny_crypto_name"}, "rdxagent3000"};
    TestGroup<1> other{"ny_logger", "ny_client.dll.other", {"ny_log_v"}};
    TestGroup<1> secondBus{"ny_msgbus", "ny_msgbus.dll", {"ny_msgbus_run"}};
    TestGroup<2> bus{"ny_msgbus", "ny_msgbus.dll", {"ny_msgbus_run", "ny_msgbus_get_version"}};
};

TEST_F(Load, LogsEveryStepOfAFirstLoadAndLeavesNullForANameThatIsMissing) {
    environment.InstallAgent();
    ASSERT_EQ(DispatcherLoad(client.Request()), NY_OK);
    const HMODULE module = ModuleOf("ny_client.dll");
    ASSERT_NE(module, nullptr);
    void** const table = client.table.load();
    ASSERT_NE(table, nullptr);
    EXPECT_EQ(table[0], reinterpret_cast<void*>(::GetProcAddress(module, "ny_property_send")));
    EXPECT_EQ(table[1], nullptr);
    EXPECT_EQ(table[2], reinterpret_cast<void*>(::GetProcAddress(module, "ny_property_bag_add_property")));
    EXPECT_EQ(client.version, 0U);
    EXPECT_THAT(log.Lines(),
                ElementsAre(LoadStarts("property:RDXAGENT3000:ny_client.dll"), Opens(PathOf("ny_client.dll")),
                            Opened(module), loadsTable, Resolves(module, "ny_property_send"),
                            Found(module, "ny_property_send"), Resolves(module, "ny_no_such_function"),
                            NotFound(module, "ny_no_such_function"), Resolves(module, "ny_property_bag_add_property"),
                            Found(module, "ny_property_bag_add_property"), Resolves(module, "property_get_version"),
                            NotFound(module, "property_get_version"), LoadReturns(0)));
}

TEST_F(Load, FillsTheVersionVariableFromTheLibrarysOwnFunction) {
    environment.InstallAgent();
    ASSERT_EQ(DispatcherLoad(bus.Request()), NY_OK);
    const HMODULE module = ModuleOf("ny_msgbus.dll");
    EXPECT_EQ(bus.version, 0x00050700U);
    EXPECT_THAT(
        log.Lines(),
        ElementsAre(LoadStarts("ny_msgbus:RDXAGENT3000:ny_msgbus.dll"), Opens(PathOf("ny_msgbus.dll")), Opened(module),
                    loadsTable, Resolves(module, "ny_msgbus_run"), Found(module, "ny_msgbus_run"),
                    Resolves(module, "ny_msgbus_get_version"), Found(module, "ny_msgbus_get_version"),
                    Resolves(module, "ny_msgbus_get_version"), Found(module, "ny_msgbus_get_version"), LoadReturns(0)));
}

TEST_F(Load, OfAVersionVariableThatIsNotZeroOrNotGivenLooksForNoVersion) {
    environment.InstallAgent();
    bus.version = 7;
    ASSERT_EQ(DispatcherLoad(bus.Request()), NY_OK);
    EXPECT_EQ(bus.version, 7U);
    EXPECT_EQ(ny_sim_call_count("ny_msgbus_get_version"), 0U);
    EXPECT_EQ(log.Lines().size(), 9U);
    LoadRequest request = secondBus.Request();
    request.version = nullptr;
    EXPECT_EQ(DispatcherLoad(request), NY_OK);
    EXPECT_EQ(ny_sim_call_count("ny_msgbus_get_version"), 0U);
}

TEST_F(Load, AVersionFunctionThatFailsChangesNothingAndTheVariableIsNotKept) {
    environment.InstallAgent();
    ASSERT_EQ(ny_sim_fail_call("ny_msgbus_get_version", 1, 9, NY_SIM_ONCE), NY_OK);
    ASSERT_EQ(DispatcherLoad(bus.Request()), NY_OK);
    EXPECT_EQ(bus.version, 0U);
    bus.version = 7;
    EXPECT_EQ(DispatcherUnload(agentSoftwareId, "ny_msgbus.dll"), NY_OK);
    EXPECT_EQ(bus.version, 7U);
}

TEST_F(Load, OfALibraryThatIsUnloadedWhileItIsAskedForItsVersionKeepsNoVersion) {
    environment.InstallAgent();
    // The thread that asks returns into the library.
    const HMODULE keptLoaded = ::LoadLibraryA(PathOf("ny_msgbus.dll").c_str());
    ASSERT_NE(keptLoaded, nullptr);
    {
        const AgentHook unloading("ny_msgbus_get_version",
                                  [] { EXPECT_EQ(DispatcherUnload(agentSoftwareId, "ny_msgbus.dll"), NY_OK); });
        EXPECT_EQ(DispatcherLoad(bus.Request()), NY_OK);
    }
    EXPECT_EQ(bus.version, 0U);
    EXPECT_EQ(bus.table.load(), nullptr);
    ::FreeLibrary(keptLoaded);
}

TEST_F(Load, OfTheSameGroupAgainResolvesNothing) {
    environment.InstallAgent();
    ASSERT_EQ(DispatcherLoad(bus.Request()), NY_OK);
    void** const table = bus.table.load();
    log.Take();
    EXPECT_EQ(DispatcherLoad(bus.Request()), NY_OK);
    EXPECT_EQ(bus.table.load(), table);
    EXPECT_THAT(log.Lines(),
                ElementsAre(LoadStarts("ny_msgbus:RDXAGENT3000:ny_msgbus.dll"), tableIsThere, LoadReturns(0)));
}

TEST_F(Load, OfTheSameGroupAgainStillAsksForAVersionThatIsZero) {
    environment.InstallAgent();
    ASSERT_EQ(DispatcherLoad(crypto.Request()), NY_OK);
    const HMODULE module = ModuleOf("ny_client.dll");
    log.Take();
    EXPECT_EQ(DispatcherLoad(crypto.Request()), NY_OK);
    EXPECT_THAT(log.Lines(), ElementsAre(LoadStarts("crypto:RDXAGENT3000:ny_client.dll"), tableIsThere,
                                         Resolves(module, "crypto_get_version"), NotFound(module, "crypto_get_version"),
                                         LoadReturns(0)));
}

TEST_F(Load, OfTwoGroupsOpensTheirLibraryOnce) {
    environment.InstallAgent();
    ASSERT_EQ(DispatcherLoad(client.Request()), NY_OK);
    const HMODULE module = ModuleOf("ny_client.dll");
    log.Take();
    ASSERT_EQ(DispatcherLoad(crypto.Request()), NY_OK);
    EXPECT_NE(crypto.table.load(), client.table.load());
    EXPECT_THAT(log.Lines(), ElementsAre(LoadStarts("crypto:RDXAGENT3000:ny_client.dll"), loadsTable,
                                         Resolves(module, "ny_crypto_name"), Found(module, "ny_crypto_name"),
                                         Resolves(module, "crypto_get_version"), NotFound(module, "crypto_get_version"),
                                         LoadReturns(0)));
    ASSERT_EQ(dispatcher->grouper.members.size(), 1U);
    EXPECT_EQ(dispatcher->grouper.members[0]->libraries.size(), 1U);
}

TEST_F(Load, OfAListedTablePointerThatWasEmptiedDoesNoWork) {
    environment.InstallAgent();
    ASSERT_EQ(DispatcherLoad(crypto.Request()), NY_OK);
    void** const table = crypto.table.exchange(nullptr);
    log.Take();
    EXPECT_EQ(DispatcherLoad(crypto.Request()), NY_OK);
    EXPECT_EQ(crypto.table.load(), nullptr);
    EXPECT_EQ(log.Lines()[1], loadsTable);
    EXPECT_EQ(log.Lines()[2], Resolves(ModuleOf("ny_client.dll"), "crypto_get_version"));
    crypto.table = table;
}

TEST_F(Load, TellsProductsApartByCase) {
    environment.InstallAgent();
    ASSERT_EQ(DispatcherLoad(crypto.Request()), NY_OK);
    ASSERT_EQ(DispatcherLoad(lowerCase.Request()), NY_OK);
    ASSERT_EQ(dispatcher->grouper.members.size(), 2U);
    EXPECT_EQ(dispatcher->grouper.members[1]->product, "rdxagent3000");
    EXPECT_EQ(dispatcher->grouper.members[1]->libraries.size(), 1U);
}

TEST_F(Load, ShowsANullGroup) {
    environment.InstallAgent();
    crypto.group = nullptr;
    crypto.version = 1;
    ASSERT_EQ(DispatcherLoad(crypto.Request()), NY_OK);
    EXPECT_EQ(log.Lines().front(), LoadStarts("(null):RDXAGENT3000:ny_client.dll"));
}

TEST_F(Load, ResolvesInTheFirstLibraryWhoseNameBeginsTheOneAskedFor) {
    environment.InstallAgent();
    std::filesystem::copy_file(FileOf("ny_logger.dll"), FileOf("ny_client.dll.other"));
    ASSERT_EQ(DispatcherLoad(crypto.Request()), NY_OK);
    const HMODULE module = ModuleOf("ny_client.dll");
    log.Take();
    ASSERT_EQ(DispatcherLoad(other.Request()), NY_OK);
    const HMODULE opened = ModuleOf("ny_client.dll.other");
    ASSERT_NE(opened, nullptr);
    EXPECT_EQ(other.table.load()[0], nullptr);
    EXPECT_THAT(log.Lines(), ElementsAre(LoadStarts("ny_logger:RDXAGENT3000:ny_client.dll.other"),
                                         Opens(PathOf("ny_client.dll.other")), Opened(opened), loadsTable,
                                         Resolves(module, "ny_log_v"), NotFound(module, "ny_log_v"),
                                         Resolves(module, "ny_logger_get_version"),
                                         NotFound(module, "ny_logger_get_version"), LoadReturns(0)));
    ReleaseDispatcher();
}

TEST_F(Load, CutsALineThatIsLongerThan2047Characters) {
    environment.InstallAgent();
    const std::string longGroup(3000, 'g');
    crypto.group = longGroup.c_str();
    crypto.version = 1;
    ASSERT_EQ(DispatcherLoad(crypto.Request()), NY_OK);
    const std::string prefix = "5 dispatcher: ";
    EXPECT_EQ(log.Lines().front(), LoadStarts(longGroup).substr(0, prefix.size() + 2047));
}

TEST_F(Load, WritesNothingWithoutASinkAndEverythingToTheLastOne) {
    environment.InstallAgent();
    LineLog second;
    ASSERT_EQ(DispatcherSetLogSink(dispatcher, {nullptr, &log}), NY_OK);
    ASSERT_EQ(DispatcherLoad(crypto.Request()), NY_OK);
    ASSERT_EQ(DispatcherSetLogSink(dispatcher, {&KeepLine, &second}), NY_OK);
    crypto.version = 1;
    ASSERT_EQ(DispatcherLoad(crypto.Request()), NY_OK);
    EXPECT_THAT(log.Lines(), IsEmpty());
    EXPECT_EQ(second.Lines().size(), 3U);
    ASSERT_EQ(DispatcherSetLogSink(dispatcher, {nullptr, nullptr}), NY_OK);
}

TEST_F(Load, WritesNothingLessSevereThanItsSinkWants) {
    LineLog failures;
    crypto.version = 1;
    ASSERT_EQ(DispatcherSetLogSink(dispatcher, {&KeepLine, &failures, SeverityFailure}), NY_OK);
    EXPECT_NE(DispatcherLoad(crypto.Request()), NY_OK) << "there is no agent";
    EXPECT_THAT(failures.Take(),
                ElementsAre(testing::StartsWith("2 dispatcher: ny_grouper_add_member library failed")));
    environment.InstallAgent();
    ASSERT_EQ(DispatcherLoad(crypto.Request()), NY_OK);
    EXPECT_THAT(failures.Lines(), IsEmpty());
    ASSERT_EQ(DispatcherSetLogSink(dispatcher, {&KeepLine, &failures, SeverityProgress}), NY_OK);
    ASSERT_EQ(DispatcherLoad(crypto.Request()), NY_OK);
    EXPECT_THAT(failures.Lines(), ElementsAre(testing::StartsWith(LoadStarts("crypto")), LoadReturns(0)));
    ASSERT_EQ(DispatcherSetLogSink(dispatcher, {nullptr, nullptr}), NY_OK);
}

TEST_F(Load, ClosesWhatIsOpenWhenTheDispatcherGoes) {
    environment.InstallAgent();
    ASSERT_EQ(DispatcherLoad(bus.Request()), NY_OK);
    ASSERT_EQ(DispatcherLoad(crypto.Request()), NY_OK);
    const HMODULE busModule = ModuleOf("ny_msgbus.dll");
    const HMODULE clientModule = ModuleOf("ny_client.dll");
    log.Take();
    ReleaseDispatcher();
    EXPECT_THAT(log.Lines(), ElementsAre(Closes(busModule), Closes(clientModule)));
    EXPECT_EQ(bus.table.load(), nullptr);
    EXPECT_EQ(bus.version, 0U);
    EXPECT_EQ(crypto.table.load(), nullptr);
    EXPECT_EQ(ModuleOf("ny_client.dll"), nullptr);
    EXPECT_EQ(ModuleOf("ny_msgbus.dll"), nullptr);
}

}  // namespace
