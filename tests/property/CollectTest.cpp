// How the module is called for its properties, and what becomes of what it throws.
#include <atomic>
#include <climits>
#include <memory>
#include <new>
#include <stdexcept>

#include "../../values/AgentException.h"
#include "property/PropertyTest.h"
#include "support/OnPurpose.h"

using corvane::ny::utils::exception;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr char unknownLine[] =
    "3: Failed to add property in the property bag for product id PRODUCT1000 due to unknown exception";

class Collect : public PropertyTest {};

TEST_F(Collect, AsksForThePropertiesAndThenForTheLogLevel) {
    const Registration registration(productId, collector);
    EXPECT_EQ(Ask(productId), answered);
    EXPECT_EQ(Ask(productId), answered);
    EXPECT_THAT(collector.log.Lines(),
                ElementsAre("CollectProperties(true)", "GetLogLevel", "CollectProperties(true)", "GetLogLevel"));
    EXPECT_THAT(sink.log.Lines(), IsEmpty());
}

TEST_F(Collect, RunsOnTheAgentsThread) {
    std::atomic<DWORD> ofCollect = 0;
    std::atomic<DWORD> ofLevel = 0;
    collector.collect = [&](ISet&) { ofCollect = ::GetCurrentThreadId(); };
    collector.getLogLevel = [&] {
        ofLevel = ::GetCurrentThreadId();
        return 0;
    };
    const Registration registration(productId, collector);
    const AgentRequest request(productId);
    ASSERT_EQ(request.Answer(), NY_OK);
    EXPECT_NE(request.ThreadId(), 0U);
    EXPECT_EQ(ofCollect, request.ThreadId());
    EXPECT_EQ(ofLevel, request.ThreadId());
}

TEST_F(Collect, WritesNothingForAnyLogLevel) {
    const Registration registration(productId, collector, &modulesSink);
    for (const int32_t level : {0, 3, 4, 5, INT_MAX, -1, INT_MIN}) {
        collector.getLogLevel = [level] { return level; };
        EXPECT_EQ(Ask(productId), answered);
        EXPECT_EQ(Ask(productId), answered);
    }
    EXPECT_THAT(modulesSink.log.Lines(), IsEmpty());
    EXPECT_THAT(sink.log.Lines(), IsEmpty());
}

TEST_F(Collect, CallsTheAgentForNothingWhenThereIsNoProperty) {
    Collector empty;
    const Registration registration(productId, empty);
    ny_sim_clear_calls();
    EXPECT_EQ(Ask(productId), nothing);
    EXPECT_THAT(AgentCalls(),
                ElementsAre("ny_variant_create_from_string", "ny_variant_get_wstring_buffer", "ny_wbuffer_get_string",
                            "ny_wbuffer_get_string", "ny_wbuffer_release", "ny_variant_release"));
}

TEST_F(Collect, WithoutACollectorWritesNoLine) {
    EXPECT_EQ(Ask(productId), nothing);
    EXPECT_THAT(sink.log.Lines(), IsEmpty());
}

TEST_F(Collect, EndsWithoutTheLogLevelOfACollectorThatIsRemovedInside) {
    const OnPurpose mistakes{"REMOVE-INSIDE", "REMOVE-UNKNOWN"};
    collector.collect = [](ISet& set) {
        EXPECT_TRUE(VsKitMsgbusRemoveCollectProperties(L"PRODUCT1000"));
        EXPECT_TRUE(set.SetProperty(L"general", L"version", L"1.0"));
    };
    const Registration registration(productId, collector);
    EXPECT_EQ(Ask(productId), answered);
    EXPECT_EQ(Ask(productId), nothing);
    EXPECT_THAT(collector.log.Lines(), ElementsAre("CollectProperties(true)"));
}

TEST_F(Collect, IsTheLastOneWhenTheCollectorIsRemovedInsideGetLogLevel) {
    const OnPurpose mistakes{"REMOVE-INSIDE", "REMOVE-UNKNOWN"};
    collector.getLogLevel = [] {
        EXPECT_TRUE(VsKitMsgbusRemoveCollectProperties(L"PRODUCT1000"));
        return 4;
    };
    const Registration registration(productId, collector);
    EXPECT_EQ(Ask(productId), answered);
    EXPECT_EQ(Ask(productId), nothing);
}

// Each request has a thread of its own, as the agent may have it.
TEST_F(Collect, AThousandTimesAtOnceIsThroughInGoodTime) {
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

// A module's program has a C++ runtime of its own; what it throws is caught in the bridge's all the same.
class CollectThrows : public PropertyTest {
protected:
    void ExpectAnswer(const std::string& answer, const std::string& line) {
        const Registration registration(productId, collector, &modulesSink);
        EXPECT_THAT(Ask(productId), ElementsAre(answer));
        EXPECT_THAT(sink.log.Take(), ElementsAre(line));
        EXPECT_THAT(modulesSink.log.Lines(), IsEmpty());
        // The next request is one like any other.
        collector.collect = [](ISet& set) { set.SetProperty(L"general", L"version", L"1.0"); };
        collector.getLogLevel = {};
        EXPECT_EQ(Ask(productId), answered);
        EXPECT_THAT(sink.log.Lines(), IsEmpty());
    }

    const OnPurpose usualMistakes{"CALLBACK-THREW"};
};

TEST_F(CollectThrows, AnInt) {
    collector.collect = [](ISet&) { throw 42; };
    ExpectAnswer("answer 3", unknownLine);
}

TEST_F(CollectThrows, ThatMemoryRanOut) {
    collector.collect = [](ISet&) { throw std::bad_alloc(); };
    ExpectAnswer("answer 3", unknownLine);
}

TEST_F(CollectThrows, AStandardException) {
    collector.collect = [](ISet&) { throw std::runtime_error("a reason of its own"); };
    ExpectAnswer("answer 3", unknownLine);
}

TEST_F(CollectThrows, TheAgentsException) {
    collector.collect = [](ISet&) { throw exception(77); };
    ExpectAnswer("answer 77",
                 "3: Failed to add property in the property bag for product id PRODUCT1000, exception: [77]");
}

TEST_F(CollectThrows, TheAgentsExceptionWithANegativeCode) {
    collector.collect = [](ISet&) { throw exception(-2147483647 - 1); };
    ExpectAnswer("answer -2147483648",
                 "3: Failed to add property in the property bag for product id PRODUCT1000, exception: [-2147483648]");
}

TEST_F(CollectThrows, FromGetLogLevel) {
    collector.collect = {};
    collector.getLogLevel = []() -> int32_t { throw 42; };
    ExpectAnswer("answer 3", unknownLine);
}

TEST_F(CollectThrows, TheAgentsExceptionFromGetLogLevel) {
    collector.collect = {};
    collector.getLogLevel = []() -> int32_t { throw exception(5); };
    ExpectAnswer("answer 5",
                 "3: Failed to add property in the property bag for product id PRODUCT1000, exception: [5]");
}

TEST_F(CollectThrows, AfterSomePropertiesWhichStay) {
    collector.collect = [](ISet& set) {
        EXPECT_TRUE(set.SetProperty(L"general", L"version", L"1.0"));
        throw 42;
    };
    const Registration registration(productId, collector);
    EXPECT_THAT(Ask(productId), ElementsAre("answer 3", "general:version=1.0"));
    EXPECT_THAT(collector.log.Lines(), ElementsAre("CollectProperties(true)"));
}

TEST_F(CollectThrows, AndTheKeptSetterIsOutsideOfACollection) {
    const OnPurpose mistakes{"LENT-KEPT"};
    ISet* kept = nullptr;
    collector.collect = [&](ISet& set) {
        kept = &set;
        throw 42;
    };
    const Registration registration(productId, collector);
    EXPECT_THAT(Ask(productId), ElementsAre("answer 3"));
    ASSERT_NE(kept, nullptr);
    EXPECT_FALSE(kept->SetProperty(L"general", L"version", L"1.0"));
}

TEST_F(CollectThrows, NamesTheProductInItsOwnLetters) {
    const Product other("\xC3\x9C-%s");
    collector.collect = [](ISet&) { throw 42; };
    const Registration registration("\xC3\x9C-%s", collector);
    EXPECT_THAT(Ask("\xC3\x9C-%s"), ElementsAre("answer 3"));
    EXPECT_THAT(sink.log.Lines(), ElementsAre("3: Failed to add property in the property bag for product id "
                                              "\xC3\x9C-%s due to unknown exception"));
}

TEST_F(CollectThrows, WithoutASinkNothingIsLost) {
    const OnPurpose mistakes{"EXIT-UNKNOWN"};
    VsMsgbusExit("PRODUCT9000", nullptr);
    collector.collect = [](ISet&) { throw exception(77); };
    const Registration registration(productId, collector);
    EXPECT_THAT(Ask(productId), ElementsAre("answer 77"));
    EXPECT_THAT(sink.log.Lines(), IsEmpty());
}

TEST_F(CollectThrows, AndSoDoesTheSink) {
    const OnPurpose mistakes{"EXIT-UNKNOWN"};
    class ThrowingSink final : public VsKitMsgbus::ILogSink {
    public:
        void Write(int /*level*/, const wchar_t* /*text*/) override {
            ++calls;
            throw 1;
        }
        std::atomic<int> calls = 0;
    };
    ThrowingSink throwing;
    VsMsgbusExit("PRODUCT9000", nullptr);
    const Product other("PRODUCT2000", &throwing);
    collector.collect = [](ISet&) { throw exception(77); };
    const Registration registration("PRODUCT2000", collector);
    EXPECT_THAT(Ask("PRODUCT2000"), ElementsAre("answer 77"));
    EXPECT_EQ(throwing.calls, 1);
}

}  // namespace
