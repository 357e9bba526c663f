// The memory that the DLL's C++ runtime needs to throw is reserved: it is there when all other memory is used up.
#include <thread>

#include "VsMsgbus.h"
#include "faults/BridgeMemory.h"
#include "support/Collector.h"

namespace {

TEST(RuntimeReserve, LetsThreadsThrowThatNeverDidBefore) {
    const BridgeMemory memory;
    Collector collector;
    BridgeMemory::Fail(1, forEver);
    std::vector<std::thread> threads;
    for (int i = 0; i < 20; ++i) {
        threads.emplace_back(
            [&] { EXPECT_FALSE(VsKitMsgbusSetCollectProperties(L"PRODUCT1000", &collector, nullptr)); });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_GE(BridgeMemory::Failures(), threads.size());
    BridgeMemory::Rest();
    EXPECT_TRUE(VsKitMsgbusSetCollectProperties(L"PRODUCT1000", &collector, nullptr));
    EXPECT_TRUE(VsKitMsgbusRemoveCollectProperties(L"PRODUCT1000"));
}

}  // namespace
