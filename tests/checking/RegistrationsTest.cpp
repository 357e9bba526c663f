// The checking bridge's findings about the interfaces that modules register. In a test that says Named the mistake is
// found; in one that says Right there must be no finding, which TearDown checks.
#include <memory>
#include <new>
#include <thread>

#include "checking/CheckedTest.h"

namespace {

class CheckedRegistrations : public CheckedTest {
protected:
    // A collector in memory that can be taken away.
    static Collector* MakeCollectorApart() {
        return new (::VirtualAlloc(nullptr, sizeof(Collector), MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE)) Collector;
    }
    static void DropCollectorApart(Collector* apart) {
        apart->~Collector();
        ::VirtualFree(apart, 0, MEM_RELEASE);
    }

    bool Set(VsKitMsgbus::INYCollectProperties* one) const {
        return VsKitMsgbusSetCollectProperties(wideId.c_str(), one, nullptr);
    }
    bool Remove() const { return VsKitMsgbusRemoveCollectProperties(wideId.c_str()); }
};

TEST_F(CheckedRegistrations, OfTheSameIdASecondTimeAreNamed) {
    Collector second;
    const Registration registration(id, collector);
    EXPECT_TRUE(Set(&second));
    EXPECT_EQ(Found("SET-TWICE"), 1U);
}

TEST_F(CheckedRegistrations, AfterARemoveAreRight) {
    { const Registration registration(id, collector); }
    const Registration registration(id, collector);
}

TEST_F(CheckedRegistrations, OfNullAreNamed) {
    EXPECT_FALSE(Set(nullptr));
    EXPECT_FALSE(VsKitMsgbusSetCollectProperties(nullptr, &collector, nullptr));
    EXPECT_EQ(Found("SET-NULL"), 2U);
}

TEST_F(CheckedRegistrations, OnTheStackOfAThreadThatHasEndedAreNamedAndNotCalled) {
    const Product product(id, &sink);
    std::thread([&] {
        Collector onStack;
        EXPECT_TRUE(Set(&onStack));
    }).join();
    EXPECT_EQ(Ask(id), std::vector<std::string>{"answer 3"});
    EXPECT_EQ(Found("ON-ENDED-STACK"), 1U);
    EXPECT_TRUE(Remove());
}

TEST_F(CheckedRegistrations, OnTheStackOfAThreadThatRunsAreRight) {
    const Product product(id, &sink);
    std::thread([&] {
        Collector onStack;
        const Registration registration(id, onStack);
        EXPECT_EQ(Ask(id), std::vector<std::string>{"answer 0"});
    }).join();
}

TEST_F(CheckedRegistrations, WhoseObjectIsGoneAreNamedAndNotCalled) {
    const Product product(id, &sink);
    Collector* const apart = MakeCollectorApart();
    EXPECT_TRUE(Set(apart));
    EXPECT_EQ(Ask(id), std::vector<std::string>{"answer 0"});
    DropCollectorApart(apart);
    EXPECT_EQ(Ask(id), std::vector<std::string>{"answer 3"});
    EXPECT_EQ(Found("INTERFACE-GONE"), 1U);
    EXPECT_THAT(file.Text(), testing::HasSubstr(": its collector, of checking_tests.exe, is no longer in memory: "));
    EXPECT_TRUE(Remove());
}

TEST_F(CheckedRegistrations, RemovedBeforeTheirObjectGoesAreRight) {
    const Product product(id, &sink);
    Collector* const apart = MakeCollectorApart();
    EXPECT_TRUE(Set(apart));
    EXPECT_TRUE(Remove());
    DropCollectorApart(apart);
    EXPECT_EQ(Ask(id), std::vector<std::string>{"answer 0"});
}

TEST_F(CheckedRegistrations, WithASlotThatIsNoFunctionAreNamed) {
    struct {
        const void* const* table;
    } object;
    const void* const slots[] = {reinterpret_cast<const void*>(&::GetTickCount), nullptr};
    object.table = slots;
    EXPECT_TRUE(Set(reinterpret_cast<VsKitMsgbus::INYCollectProperties*>(&object)));
    EXPECT_EQ(Found("HEADERS-DIFFER"), 1U);
    EXPECT_EQ(OnlyLine(),
              "VsMsgbus check [HEADERS-DIFFER] " + id +
                  ": slot 2 of its collector is no function: the module was compiled with other headers, and "
                  "another function than meant would be called. Compile the module with the headers of this "
                  "bridge's package. (thread , in VsKitMsgbusSetCollectProperties)");
    EXPECT_TRUE(Remove());
}

TEST_F(CheckedRegistrations, RemovedTwiceAreNamed) {
    {
        Registration registration(id, collector);
        registration.Remove();
        registration.Remove();
    }
    EXPECT_EQ(Found("REMOVE-UNKNOWN"), 1U);
}

TEST_F(CheckedRegistrations, RemovedInsideTheirOwnCallbackAreNamed) {
    const Product product(id, &sink);
    EXPECT_TRUE(Set(&collector));
    collector.collect = [&](auto&) { EXPECT_TRUE(Remove()); };
    EXPECT_EQ(Ask(id), std::vector<std::string>{"answer 0"});
    EXPECT_EQ(Found("REMOVE-INSIDE"), 1U);
}

// Both wait for the other one's callback.
TEST_F(CheckedRegistrations, RemovedByAThreadThatTheirCallbackWaitsForAreNamedWithinRealFifteenSeconds) {
    const Product product(id, &sink);
    const Product otherProduct(id + "other", &sink);
    Event isInside;
    Event otherIsInside;
    Collector other([&](auto&) {
        otherIsInside.Set();
        EXPECT_TRUE(isInside.Wait());
        EXPECT_TRUE(Remove());
    });
    collector.collect = [&](auto&) {
        isInside.Set();
        EXPECT_TRUE(otherIsInside.Wait());
        EXPECT_TRUE(VsKitMsgbusRemoveCollectProperties((wideId + L"other").c_str()));
    };
    EXPECT_TRUE(Set(&collector));
    EXPECT_TRUE(VsKitMsgbusSetCollectProperties((wideId + L"other").c_str(), &other, nullptr));
    const AgentRequest first(id);
    const AgentRequest second(id + "other");
    EXPECT_EQ(first.Answer(), 0);
    EXPECT_EQ(second.Answer(), 0);
    EXPECT_GE(Found("WAIT-CYCLE"), 1U);
    EXPECT_GE(Found("REMOVE-GAVE-UP"), 1U);
}

}  // namespace
