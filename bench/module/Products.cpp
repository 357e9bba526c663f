// Many products in one process: entered, attached to the agent again on an upgrade, and left.
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "bench/floor/FloorHost.h"
#include "bench/harness/Module.h"
#include "bench/harness/Stage.h"
#include "bench/module/Measurements.h"
#include "bench/module/Upgrades.h"

namespace bench {

namespace {

enum class Phase { Enter, Upgrade, Leave };

constexpr std::pair<Phase, const char*> phases[] = {
    {Phase::Enter, "entered"}, {Phase::Upgrade, "attached on an upgrade"}, {Phase::Leave, "left"}};

class OurHost {
public:
    void Enter(const char* productId) {
        if (!VsMsgbusEntry(productId, VsMsgbusServiceProperty, nullptr, &instance)) {
            throw std::runtime_error("the bridge cannot be entered");
        }
    }
    void Leave(const char* productId) const { VsMsgbusExit(productId, instance); }

private:
    VsMsgbus* instance = nullptr;
};

std::vector<std::string> ProductIds(size_t count) {
    std::vector<std::string> ids;
    for (size_t i = 0; i < count; ++i) {
        ids.push_back("PRODUCT" + std::to_string(1000 + i));
    }
    return ids;
}

// A host's life, from its beginning to its end, with all of these products; the seconds of one phase of it.
template <class Host>
double Live(Stage& stage, const std::vector<std::string>& ids, Phase phase) {
    std::map<Phase, double> seconds;
    auto host = std::make_unique<Host>();
    seconds[Phase::Enter] = SecondsOf([&] {
        for (const std::string& id : ids) {
            host->Enter(id.c_str());
        }
    });
    if (phase == Phase::Upgrade) {
        seconds[phase] = Upgrades(stage, ids.size()).Next();
    }
    seconds[Phase::Leave] = SecondsOf([&] {
        for (const std::string& id : ids) {
            host->Leave(id.c_str());
        }
    });
    return seconds[phase];
}

template <class Host>
Contender Way(const char* name, Stage& stage, const std::vector<std::string>& ids, Phase phase) {
    return {name, [&stage, ids, phase](size_t count) {
                double seconds = 0;
                for (size_t i = 0; i < count; ++i) {
                    seconds += Live<Host>(stage, ids, phase);
                }
                return seconds;
            }};
}

}  // namespace

void MeasureProducts(Session& session) {
    Stage stage;
    for (const auto& [phase, name] : phases) {
        std::vector<Result> results;
        for (const size_t products : {size_t{1000}, size_t{10000}}) {
            const std::vector<std::string> ids = ProductIds(products);
            results.push_back(
                Measure({"products",
                         std::to_string(products) + " " + name,
                         static_cast<double>(products),
                         static_cast<double>(products),
                         {Way<OurHost>("ours", stage, ids, phase), Way<FloorHost>("by hand", stage, ids, phase)},
                         1.3},
                        session.effort));
            session.report.Add(results.back());
        }
        const auto growth = [&](size_t way) {
            return results[1].nanoseconds[way].median / results[0].nanoseconds[way].median;
        };
        session.report.Add(Amount{"products",
                                  std::string("one of 10000 against one of 1000, ") + name,
                                  0,
                                  "times",
                                  growth(0),
                                  {{"by hand", growth(1)}},
                                  "at most 2: linear",
                                  growth(0) <= 2});
    }
}

}  // namespace bench
