// LogLib's interfaces, and its members with a name of each ABI, called across the border.
#include "abi/AbiModuleTest.h"

namespace {

class HostLogTest : public AbiTest {};

TEST_F(HostLogTest, IsWrittenAndSeenByTheModule) {
    module.Call<decltype(ModuleListenToHostLog)>("ModuleListenToHostLog", true);
    module.Call<decltype(ModuleWriteToHostLog)>("ModuleWriteToHostLog");
    module.Call<decltype(ModuleListenToHostLog)>("ModuleListenToHostLog", false);
    module.Call<decltype(ModuleWriteToHostLog)>("ModuleWriteToHostLog");
    EXPECT_EQ(module.log.Take(), (std::vector<std::string>{
                                     "SetListener answers another",
                                     "OnLogEvent 8 Module a text",
                                     "OnLogEvent 8 Own a format and 12",
                                     "SetListener answers the listener",
                                 }));
}

}  // namespace
