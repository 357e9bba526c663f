// How often the C++ layer asks the heap for memory while policies are read.
#include "msgbus/client/NyClientFixture.h"
#include "policy/CPolicyBag.h"
#include "support/FailingMemory.h"
#include "vsmsgbus.hpp"

namespace {

class LayerAllocation : public NyClientFixture {
protected:
    void HoldSettings(size_t count) const {
        std::string json =
            R"([{"softwareId": "PRODUCT1000", "sections": [{"name": ")" + section + R"(", "settings": [)";
        for (size_t i = 0; i < count; ++i) {
            json += std::string(i == 0 ? "" : ",") + R"(["name", "value"])";
        }
        EXPECT_EQ(ny_sim_policies_from_json((json + "]}]}]").c_str()), NY_OK);
    }

    // The allocations that reading so many settings takes.
    template <class Read>
    size_t Of(size_t count, const Read& read) {
        HoldSettings(count);
        CPolicyBag bag(client->clientHandler.load(), 0, nullptr, L"PRODUCT1000");
        vsmsgbus::detail::Log log(nullptr);
        vsmsgbus::Policies policies(L"PRODUCT1000", bag, log);
        const size_t before = AllocationsOfThread();
        EXPECT_EQ(read(policies), count);
        return AllocationsOfThread() - before;
    }

    void SetUp() override {
        NyClientFixture::SetUp();
        NyClientSetLogCallback(client, nullptr, nullptr);
        ASSERT_EQ(NyClientStart(client), NY_OK);
    }

    // Reads with a visitor.
    static size_t Visit(vsmsgbus::Policies& policies) {
        size_t visited = 0;
        policies.Walk([&](const vsmsgbus::Setting& /*setting*/) { ++visited; });
        return visited;
    }

    std::string section = "s";
};

TEST_F(LayerAllocation, IsNoneForAWalkWithAVisitor) {
    Of(1, Visit);
    EXPECT_EQ(Of(10, Visit), 0U);
    EXPECT_EQ(Of(1000, Visit), 0U);
}

TEST_F(LayerAllocation, IsOneForALongNameOfASectionThatAVisitorIsShown) {
    section = "a name that no string keeps within itself";
    Of(1, Visit);
    EXPECT_EQ(Of(10, Visit), 1U);
    EXPECT_EQ(Of(1000, Visit), 1U);
}

TEST_F(LayerAllocation, IsNoneForEachSettingOfARange) {
    const auto keep = [](vsmsgbus::Policies& policies) { return policies.Settings().size(); };
    Of(1, keep);
    EXPECT_LE(Of(1000, keep), 20U) << "the list grows to twice its size at a time";
}

}  // namespace
