// Properties through the C++ layer.
#include <chrono>
#include <stdexcept>

#include "cpp/LayerTest.h"
#include "support/OnPurpose.h"

using testing::ElementsAre;

namespace {

class LayerProperties : public LayerTest {
protected:
    // The properties that the agent gets from a product with this handler.
    std::vector<std::string> AskFor(vsmsgbus::PropertiesHandler handler) {
        const vsmsgbus::Product product(id, Logged({.properties = std::move(handler)}));
        return Ask(id);
    }
};

TEST_F(LayerProperties, AreTextsNumbersAndMoments) {
    using namespace std::chrono;
    const auto answers = AskFor([](vsmsgbus::Properties& properties) {
        EXPECT_TRUE(properties.Set("general", L"text", "\xC3\xA9"));
        EXPECT_TRUE(properties.Set("general", "wide", L"wide"));
        EXPECT_TRUE(properties.Set("general", "number", -12));
        EXPECT_TRUE(properties.Set("general", "large", 18446744073709551615U));
        EXPECT_TRUE(properties.Set("general", "yes", true));
        EXPECT_TRUE(properties.Set("general", "no", false));
        const auto moment = sys_days(year(2026) / 3 / 1) + hours(8) + minutes(5) + seconds(9) + milliseconds(999);
        EXPECT_TRUE(properties.Set("general", "moment", system_clock::time_point(moment)));
    });
    EXPECT_THAT(answers, ElementsAre("answer 0", "general:text=\xC3\xA9", "general:wide=wide", "general:number=-12",
                                     "general:large=18446744073709551615", "general:yes=true", "general:no=false",
                                     "general:moment=2026-03-01T08:05:09Z"));
}

TEST_F(LayerProperties, ThatTheAgentRefusesAreToldTheLogHandler) {
    ny_sim_fail_call("ny_property_bag_add_property", 1, 77, NY_SIM_ONCE);
    EXPECT_THAT(AskFor([](vsmsgbus::Properties& properties) {
                    EXPECT_FALSE(properties.Set("general", "refused", 1));
                    EXPECT_TRUE(properties.Set("general", "taken", 2));
                }),
                ElementsAre("answer 0", "general:taken=2"));
    EXPECT_THAT(lines.Lines(), ElementsAre("5: Failed to add property for refused= 1, exception 77"));
}

TEST_F(LayerProperties, WhoseHandlerThrowsAreAFailureAndTheLogHandlerHearsOfIt) {
    const OnPurpose mistakes{"CALLBACK-THREW"};
    EXPECT_THAT(AskFor([](vsmsgbus::Properties& /*properties*/) { throw std::runtime_error("no disk"); }),
                ElementsAre("answer 3"));
    EXPECT_THAT(
        lines.Lines(),
        ElementsAre(
            "3: the handler of properties threw: no disk",
            "3: Failed to add property in the property bag for product id PRODUCT1000 due to unknown exception"));
}

TEST_F(LayerProperties, WhoseHandlerThrowsSomethingElseAreAFailureToo) {
    const OnPurpose mistakes{"CALLBACK-THREW"};
    EXPECT_THAT(AskFor([](vsmsgbus::Properties& /*properties*/) { throw 42; }), ElementsAre("answer 3"));
    EXPECT_THAT(
        lines.Lines(),
        ElementsAre(
            "3: the handler of properties threw: not a std::exception",
            "3: Failed to add property in the property bag for product id PRODUCT1000 due to unknown exception"));
}

}  // namespace
