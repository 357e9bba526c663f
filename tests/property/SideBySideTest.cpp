// Requests that come at the same time.
#include <algorithm>
#include <atomic>
#include <memory>
#include <thread>

#include "property/PropertyTest.h"

namespace {

class SideBySide : public PropertyTest {};

TEST_F(SideBySide, TwoRequestsForOneProductNeverAre) {
    std::atomic<int> inside = 0;
    std::atomic<int> most = 0;
    Event isInside;
    Event mayLeave;
    collector.collect = [&](ISet& set) {
        most = std::max(most.load(), ++inside);
        isInside.Set();
        EXPECT_TRUE(mayLeave.Wait());
        EXPECT_TRUE(set.SetProperty(L"general", L"version", L"1.0"));
    };
    // The end of a collection is the end of GetLogLevel.
    collector.getLogLevel = [&] { return --inside; };
    const Registration registration(productId, collector);
    std::vector<std::unique_ptr<AgentRequest>> requests;
    for (int i = 0; i < 5; ++i) {
        requests.push_back(std::make_unique<AgentRequest>(productId));
    }
    ASSERT_TRUE(isInside.Wait());
    // Long enough for the others to come in, if they could.
    EXPECT_FALSE(requests.back()->IsAnsweredWithin(std::chrono::milliseconds(30)));
    mayLeave.Set();
    for (const auto& request : requests) {
        EXPECT_EQ(request->Answer(), NY_OK);
        EXPECT_EQ(request->Properties().size(), 1U);
    }
    EXPECT_EQ(most, 1);
}

// Each request has a thread of its own, as the agent may have it.
TEST_F(SideBySide, AThousandRequestsForOneProductAreThroughInGoodTime) {
    constexpr size_t count = 1000;
    constexpr std::chrono::seconds goodTime{10};
    Event mayLeave;
    collector.collect = [&](ISet&) { EXPECT_TRUE(mayLeave.Wait()); };
    const Registration registration(productId, collector);
    std::vector<std::unique_ptr<AgentRequest>> requests;
    for (size_t i = 0; i < count; ++i) {
        requests.push_back(std::make_unique<AgentRequest>(productId));
    }
    const auto begin = std::chrono::steady_clock::now();
    mayLeave.Set();
    for (const auto& request : requests) {
        EXPECT_EQ(request->Answer(), NY_OK);
    }
    EXPECT_LT(std::chrono::steady_clock::now() - begin, goodTime);
    EXPECT_EQ(collector.log.Lines().size(), 2 * count);
}

// Each collector leaves only when the other one has come.
TEST_F(SideBySide, RequestsForTwoProductsAre) {
    const Product other("PRODUCT2000");
    Event firstIsInside;
    Event secondIsInside;
    collector.collect = [&](ISet&) {
        firstIsInside.Set();
        EXPECT_TRUE(secondIsInside.Wait());
    };
    Collector others([&](ISet&) {
        secondIsInside.Set();
        EXPECT_TRUE(firstIsInside.Wait());
    });
    const Registration ofFirst(productId, collector);
    const Registration ofSecond("PRODUCT2000", others);
    const AgentRequest first(productId);
    const AgentRequest second("PRODUCT2000");
    EXPECT_EQ(first.Answer(), NY_OK);
    EXPECT_EQ(second.Answer(), NY_OK);
}

// While one collector is busy, everybody else can register, enter and leave.
TEST_F(SideBySide, ABusyCollectorIsNoReasonForOthersToWait) {
    Event isInside;
    Event mayLeave;
    collector.collect = [&](ISet&) {
        isInside.Set();
        EXPECT_TRUE(mayLeave.Wait());
    };
    const Registration registration(productId, collector);
    const AgentRequest busy(productId);
    ASSERT_TRUE(isInside.Wait());
    Collector others;
    Product other("PRODUCT2000");
    Registration ofOther("PRODUCT2000", others);
    EXPECT_EQ(Ask("PRODUCT2000"), nothing);
    ofOther.Remove();
    other.Exit();
    EXPECT_FALSE(busy.IsAnsweredWithin(std::chrono::milliseconds(0)));
    mayLeave.Set();
    EXPECT_EQ(busy.Answer(), NY_OK);
}

// Eight threads: three that register and remove collectors, four that ask for them, one with a product that comes and
// goes. Meanwhile the agent is upgraded.
class Crowd : public PropertyTest {
protected:
    static constexpr int rounds = 400;
    static constexpr int moduleCount = 3;

    struct Module {
        explicit Module(const std::string& id) : product(id) {}

        Product product;
        std::atomic<bool> isRegistered = false;
        Event wasCalled;
        Collector collector{[this](ISet& set) {
            EXPECT_TRUE(isRegistered) << "called after Remove";
            EXPECT_TRUE(set.SetProperty(L"path", L"name", L"value"));
            wasCalled.Set();
        }};
    };

    void RegisterAndRemove(Module& module) {
        for (int i = 0; i < rounds; ++i) {
            module.isRegistered = true;
            Registration registration(module.product.Id(), module.collector);
            // Every other round somebody finds it registered.
            if (i % 2 == 0) {
                AgentRequest(module.product.Id()).Answer();
            }
            registration.Remove();
            module.isRegistered = false;
        }
    }

    void AskAll() {
        for (int i = 0; i < rounds; ++i) {
            const AgentRequest request(modules[static_cast<size_t>(i % moduleCount)]->product.Id());
            const int32_t answer = request.Answer();
            EXPECT_TRUE(answer == NY_OK || answer == NY_SIM_NOT_REGISTERED) << answer;
            EXPECT_LE(request.Properties().size(), 1U);
        }
    }

    static void EnterAndLeave() {
        for (int i = 0; i < rounds; ++i) {
            const Product guest("PRODUCT9000");
            EXPECT_TRUE(guest.IsEntered());
        }
    }

    std::vector<std::unique_ptr<Module>> modules;
};

TEST_F(Crowd, OfThreadsAgreesOnWhoIsRegistered) {
    for (int i = 0; i < moduleCount; ++i) {
        modules.push_back(std::make_unique<Module>("MODULE" + std::to_string(i)));
    }
    std::vector<std::thread> threads;
    for (const auto& module : modules) {
        threads.emplace_back([&] { RegisterAndRemove(*module); });
    }
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([this] { AskAll(); });
    }
    threads.emplace_back(EnterAndLeave);
    for (const auto& module : modules) {
        EXPECT_TRUE(module->wasCalled.Wait());
    }
    for (const char* version : {"5.7.1", "5.7.2", "5.7.3"}) {
        UpgradeAndWait(version, "full", 1 + moduleCount);
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    // Nothing is under way any more once everybody has left.
    product.Exit();
    for (const auto& module : modules) {
        module->product.Exit();
    }
    for (const auto& module : modules) {
        const Product again(module->product.Id());
        EXPECT_EQ(Ask(module->product.Id()), nothing);
    }
}

}  // namespace
