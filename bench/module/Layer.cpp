// Measures the C++ layer against the plain interfaces, which are the floor here.
#include "bench/bare/BareAgent.h"
#include "bench/floor/FloorAgent.h"
#include "bench/harness/Module.h"
#include "bench/harness/Stage.h"
#include "bench/module/Measurements.h"
#include "vsmsgbus.hpp"

namespace bench {

namespace {

constexpr size_t settings = 1000;

void RequireAll(size_t counted) {
    if (counted != settings) {
        throw std::runtime_error("settings got lost");
    }
}

size_t CountPlainly(IPolicyBag& bag) {
    SettingCounter counting;
    bag.EnumeratePolicies(bareWideProductId, &counting);
    return counting.settings;
}

size_t CountVisited(IPolicyBag& bag) {
    vsmsgbus::detail::Log log(nullptr);
    vsmsgbus::Policies policies(bareWideProductId, bag, log);
    size_t counted = 0;
    policies.Walk([&](const vsmsgbus::Setting& /*setting*/) { ++counted; });
    return counted;
}

size_t CountKept(IPolicyBag& bag) {
    vsmsgbus::detail::Log log(nullptr);
    return vsmsgbus::Policies(bareWideProductId, bag, log).Settings().size();
}

// Within one notification.
Contender Counting(const char* name, Enforcing& module, size_t (*count)(IPolicyBag& bag)) {
    return {name, [&module, count](size_t times) {
                double seconds = 0;
                module.Enforce([&](IPolicyBag& bag) {
                    seconds = SecondsOf([&] {
                        for (size_t i = 0; i < times; ++i) {
                            RequireAll(count(bag));
                        }
                    });
                });
                return seconds;
            }};
}

}  // namespace

void MeasureLayer(Session& session) {
    const Stage stage;
    const Entered entered(VsMsgbusServicePolicy);
    OpenFloorAgent(stage.Folder());
    Enforcing module;
    TheBareAgent()->settings = settings;
    const Contender plain = Counting("floor", module, CountPlainly);
    session.Race({"C++ layer",
                  "a visited walk of 1000 settings",
                  settings,
                  settings,
                  {Counting("ours", module, CountVisited), plain},
                  1.1});
    session.Race({"C++ layer",
                  "a range of 1000 settings",
                  settings,
                  settings,
                  {Counting("ours", module, CountKept), plain},
                  std::nullopt});
}

}  // namespace bench
