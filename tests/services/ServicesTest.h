#pragma once

#include <atomic>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "VsMsgbus.h"
#include "support/BridgeTest.h"

// A product in the bridge, named to no service.
class ServicesTest : public ProductTest {
protected:
    ServicesTest() : ProductTest(0) {}

    // Returns when the bridge has let go of the agent, whose key is still there.
    void LoseAgent() {
        environment.Installer().DeleteVersion();
        ASSERT_TRUE(WatcherCalls("ny_client_handler_release"));
        sink.log.Take();
    }

    // Upgrades the agent three times while three threads repeat `work`, which answers whether it succeeded; it must
    // have done so at least once.
    void UpgradeDuring(const std::function<bool()>& work) {
        std::atomic<bool> isOver = false;
        std::atomic<int> successes = 0;
        std::vector<std::thread> threads;
        for (int i = 0; i < 3; ++i) {
            threads.emplace_back([&] {
                while (!isOver) {
                    successes += work() ? 1 : 0;
                }
            });
        }
        for (const char* const version : {"5.7.1", "5.7.2", "5.7.3"}) {
            ny_sim_clear_calls();
            environment.UpgradeAgent(version);
            EXPECT_TRUE(WatcherCalls("ny_client_handler_start"));
        }
        isOver = true;
        for (std::thread& thread : threads) {
            thread.join();
        }
        EXPECT_GT(successes, 0);
    }
};

inline constexpr int32_t faultCodes[] = {77, -5, NY_INVALID_ARGUMENT, NY_FUNCTION_MISSING};
