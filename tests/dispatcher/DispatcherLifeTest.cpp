// The life of the process's dispatcher and what its holders are answered.
#include <thread>

#include "dispatcher/DispatcherTest.h"
#include "support/FailingMemory.h"
#include "support/Rendezvous.h"

namespace {

using testing::IsEmpty;

class DispatcherLife : public AgentTest {
protected:
    TestGroup<1> crypto{"crypto", "ny_client.dll", {"ny_crypto_name"}};
};

TEST_F(DispatcherLife, IsSharedByItsHoldersAndEndsWithTheLast) {
    environment.InstallAgent();
    Dispatcher* first = nullptr;
    Dispatcher* second = nullptr;
    ASSERT_EQ(DispatcherCreate(nullptr, &first), NY_OK);
    ASSERT_EQ(DispatcherCreate(nullptr, &second), NY_OK);
    EXPECT_EQ(first, second);
    EXPECT_EQ(first->references, 2U);
    EXPECT_EQ(first->context, &first);
    ASSERT_EQ(DispatcherLoad(crypto.Request()), NY_OK);
    EXPECT_EQ(DispatcherRelease(second), NY_OK);
    EXPECT_NE(crypto.table.load(), nullptr);
    EXPECT_EQ(DispatcherLoad(crypto.Request()), NY_OK);
    EXPECT_EQ(DispatcherRelease(first), NY_OK);
    EXPECT_EQ(crypto.table.load(), nullptr);
    EXPECT_EQ(DispatcherLoad(crypto.Request()), NY_INVALID_ARGUMENT);
}

TEST_F(DispatcherLife, CanStartAgain) {
    environment.InstallAgent();
    for (int life = 0; life < 3; ++life) {
        Dispatcher* dispatcher = nullptr;
        ASSERT_EQ(DispatcherCreate(nullptr, &dispatcher), NY_OK);
        EXPECT_THAT(dispatcher->grouper.members, IsEmpty());
        EXPECT_EQ(DispatcherLoad(crypto.Request()), NY_OK);
        EXPECT_NE(crypto.table.load(), nullptr);
        EXPECT_EQ(DispatcherRelease(dispatcher), NY_OK);
        EXPECT_EQ(crypto.table.load(), nullptr);
    }
}

TEST_F(DispatcherLife, AnswersNullWithInvalidArgument) {
    LineLog log;
    EXPECT_EQ(DispatcherCreate(nullptr, nullptr), NY_INVALID_ARGUMENT);
    EXPECT_EQ(DispatcherRelease(nullptr), NY_INVALID_ARGUMENT);
    EXPECT_EQ(DispatcherSetLogSink(nullptr, {nullptr, &log}), NY_INVALID_ARGUMENT);
    EXPECT_EQ(DispatcherLoad(crypto.Request()), NY_INVALID_ARGUMENT);
}

TEST_F(DispatcherLife, DoesNotBeginWithoutAnInitThatSucceeds) {
    DispatcherOperations noInit = dispatcherOperations;
    noInit.init = nullptr;
    DispatcherOperations failingInit = dispatcherOperations;
    failingInit.init = [](Dispatcher&, const char*) -> int32_t { return NY_OUT_OF_MEMORY; };
    const DispatcherOperations* const cases[] = {nullptr, &noInit, &failingInit};
    for (const DispatcherOperations* operations : cases) {
        Dispatcher* dispatcher = nullptr;
        EXPECT_EQ(DispatcherCreate(nullptr, &dispatcher, operations), NY_DISPATCHER_INIT);
        EXPECT_EQ(dispatcher, nullptr);
        EXPECT_EQ(DispatcherLoad(crypto.Request()), NY_INVALID_ARGUMENT);
    }
    Dispatcher* dispatcher = nullptr;
    EXPECT_EQ(DispatcherCreate(nullptr, &dispatcher), NY_OK);
    EXPECT_EQ(DispatcherRelease(dispatcher), NY_OK);
}

TEST_F(DispatcherLife, DoesNotBeginWithoutMemory) {
    Dispatcher* dispatcher = nullptr;
    int32_t result = NY_OK;
    {
        const FailingMemory none;
        result = DispatcherCreate(nullptr, &dispatcher);
    }
    EXPECT_EQ(result, NY_OUT_OF_MEMORY);
    EXPECT_EQ(dispatcher, nullptr);
    EXPECT_EQ(DispatcherLoad(crypto.Request()), NY_INVALID_ARGUMENT);
}

TEST_F(DispatcherLife, GivesProductsWithoutARuntimePathTheDefaultOne) {
    environment.InstallAgent();
    const std::string folder = environment.Installer().CurrentFolder().string();
    environment.Installer().DeleteRuntimePath();
    Dispatcher* dispatcher = nullptr;
    ASSERT_EQ(DispatcherCreate(folder.c_str(), &dispatcher), NY_OK);
    EXPECT_EQ(DispatcherLoad(crypto.Request()), NY_OK);
    ASSERT_EQ(dispatcher->grouper.members.size(), 1U);
    EXPECT_EQ(dispatcher->grouper.members[0]->directory, folder);
    DispatcherRelease(dispatcher);
}

TEST_F(DispatcherLife, GivesEachOfManyThreadsADispatcherThatIsWhole) {
    environment.InstallAgent();
    constexpr int threadCount = 8;
    constexpr int rounds = 25;
    Rendezvous start(threadCount);
    std::atomic<int> loaded = 0;
    const auto live = [&] {
        TestGroup<1> group{"crypto", "ny_client.dll", {"ny_crypto_name"}};
        for (int round = 0; round < rounds; ++round) {
            start.Meet();
            Dispatcher* dispatcher = nullptr;
            if (DispatcherCreate(nullptr, &dispatcher) == NY_OK && DispatcherLoad(group.Request()) == NY_OK &&
                group.table.load() != nullptr) {
                ++loaded;
            }
            start.Meet();
            DispatcherRelease(dispatcher);
            // All threads have released the dispatcher here: only then does the next round begin, with a new one.
            start.Meet();
        }
    };
    std::vector<std::thread> threads;
    for (int i = 0; i < threadCount; ++i) {
        threads.emplace_back(live);
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(loaded, threadCount * rounds);
    EXPECT_EQ(DispatcherLoad(crypto.Request()), NY_INVALID_ARGUMENT);
}

TEST_F(DispatcherLife, ThreadsThatCreateAtOnceShareOne) {
    constexpr int threadCount = 8;
    Rendezvous start(threadCount);
    std::array<Dispatcher*, threadCount> held{};
    std::vector<std::thread> threads;
    for (int i = 0; i < threadCount; ++i) {
        threads.emplace_back([&, i] {
            start.Meet();
            DispatcherCreate(nullptr, &held[static_cast<size_t>(i)]);
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    ASSERT_NE(held[0], nullptr);
    EXPECT_THAT(held, testing::Each(held[0]));
    EXPECT_EQ(held[0]->references, 8U);
    for (Dispatcher* dispatcher : held) {
        EXPECT_EQ(DispatcherRelease(dispatcher), NY_OK);
    }
    EXPECT_EQ(DispatcherUnload(agentSoftwareId, "ny_client.dll"), NY_INVALID_ARGUMENT);
}

}  // namespace
