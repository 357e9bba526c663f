// The name tables of the agent's groups, and an agent that exports all that they name.
#include <ostream>

#include "dispatcher/DispatcherTest.h"
#include "dispatcher/ExpectedGroups.h"
#include "dispatcher/groups/BufferGroup.h"
#include "dispatcher/groups/ClientHandlerGroup.h"
#include "dispatcher/groups/CryptoGroup.h"
#include "dispatcher/groups/InfoGroup.h"
#include "dispatcher/groups/LoggerGroup.h"
#include "dispatcher/groups/MsgbusGroup.h"
#include "dispatcher/groups/PolicyGroup.h"
#include "dispatcher/groups/PropertyGroup.h"
#include "dispatcher/groups/SchedulerGroup.h"
#include "dispatcher/groups/UpdaterGroup.h"
#include "dispatcher/groups/VariantGroup.h"

namespace {

struct GroupCase {
    const char* test;
    Group* group;
    const ExpectedGroup* expected;
    size_t count;
};

// How CTest names the cases.
void PrintTo(const GroupCase& tested, std::ostream* out) {
    *out << tested.test;
}

const GroupCase groupCases[] = {
    {"Buffers", &bufferGroup, &expectedBufferGroup, 15},
    {"Variants", &variantGroup, &expectedVariantGroup, 66},
    {"Property", &propertyGroup, &expectedPropertyGroup, 5},
    {"Policy", &policyGroup, &expectedPolicyGroup, 52},
    {"Scheduler", &schedulerGroup, &expectedSchedulerGroup, 11},
    {"Updater", &updaterGroup, &expectedUpdaterGroup, 32},
    {"Crypto", &cryptoGroup, &expectedCryptoGroup, 4},
    {"Info", &infoGroup, &expectedInfoGroup, 3},
    {"Msgbus", &msgbusGroup, &expectedMsgbusGroup, 50},
    {"ClientHandler", &clientHandlerGroup, &expectedClientHandlerGroup, 14},
    {"Logger", &loggerGroup, &expectedLoggerGroup, 12},
};

class NameTableTest : public DispatcherTest, public testing::WithParamInterface<GroupCase> {};

TEST_P(NameTableTest, ListTheGroupsFunctionsInSlotOrder) {
    const Group& group = *GetParam().group;
    EXPECT_EQ(group.name, GetParam().expected->name);
    EXPECT_EQ(group.library, GetParam().expected->library);
    EXPECT_EQ(group.count, GetParam().count);
    EXPECT_EQ(Lines(group.names, group.names + group.count), GetParam().expected->functions);
}

TEST_P(NameTableTest, AreResolvedWhollyFromTheFullAgent) {
    environment.InstallAgent();
    Group& group = *GetParam().group;
    LoadGroup(group);
    void** const table = group.table.load();
    ASSERT_NE(table, nullptr);
    const HMODULE module = ModuleOf(group.library);
    for (size_t slot = 0; slot < group.count; ++slot) {
        const char* const name = GetParam().expected->functions.at(slot).c_str();
        EXPECT_NE(table[slot], nullptr) << name;
        EXPECT_EQ(table[slot], reinterpret_cast<void*>(::GetProcAddress(module, name))) << name;
    }
}

INSTANTIATE_TEST_SUITE_P(Groups, NameTableTest, testing::ValuesIn(groupCases),
                         [](const testing::TestParamInfo<GroupCase>& tested) { return tested.param.test; });

}  // namespace
