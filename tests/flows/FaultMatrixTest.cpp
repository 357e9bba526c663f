// Every flow with every agent call in it failing in every way. The cases come from the recorded calls of a good run, so
// that a new call is covered by itself; what is expected of each stands in expected/<flow>.txt. To write the tables
// anew: FLOWS_WRITE_EXPECTED=1 build/asan/bin/inner_flow_tests --gtest_filter='*FaultMatrix*', then read the
// difference.
#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <set>

#include "ExpectedFolder.h"
#include "flows/FaultCase.h"
#include "flows/OutcomeTable.h"
#include "flows/TranscriptChange.h"

namespace {

Lines Visible(const Lines& transcript) {
    return DroppedLines::AreSeen() ? transcript : WithoutDropped(transcript);
}

// Never right, whatever a table says.
bool IsWrongAnyway(const Lines& transcript) {
    return std::any_of(transcript.begin(), transcript.end(), [](const std::string& line) {
        return line.starts_with("LEFT:") || line.starts_with("NOT SEEN:") || line.starts_with("AGAIN:");
    });
}

class FaultMatrix : public testing::TestWithParam<FlowKind> {
protected:
    static std::filesystem::path TableFile() {
        return std::filesystem::path(expectedFolder) / (std::string(GetParam().name) + ".txt");
    }

    // Runs all cases and has `look(fault, transcript)` judge each.
    template <class Look>
    void ForEachCase(Look&& look) {
        for (const FaultCase& fault : cases) {
            const Lines transcript = runner.Run(fault);
            EXPECT_FALSE(IsWrongAnyway(transcript)) << fault.Name() << ":\n" << Joined(transcript);
            look(fault, transcript);
        }
        EXPECT_EQ(Joined(runner.End()), "");
    }

    void Compare() {
        const OutcomeTable table = OutcomeTable::Read(TableFile());
        EXPECT_EQ(Joined(good.transcript), Joined(Visible(table.good)));
        std::set<std::string> unmet;
        for (const auto& [name, change] : table.changes) {
            unmet.insert(name);
        }
        ForEachCase([&](const FaultCase& fault, const Lines& transcript) {
            unmet.erase(fault.Name());
            const auto expected = table.changes.find(fault.Name());
            if (expected == table.changes.end()) {
                ADD_FAILURE() << "not in the table: " << fault.Name() << "\n" << Joined(transcript);
            } else {
                EXPECT_EQ(Joined(transcript), Joined(Visible(Changed(table.good, expected->second)))) << fault.Name();
            }
        });
        EXPECT_THAT(unmet, testing::IsEmpty()) << "in the table and not met";
    }

    void Write() {
        OutcomeTable table;
        table.good = good.transcript;
        Lines order;
        ForEachCase([&](const FaultCase& fault, const Lines& transcript) {
            order.push_back(fault.Name());
            table.changes[fault.Name()] = ChangeOf(good.transcript, transcript);
        });
        table.Write(TableFile(), order);
    }

    FlowWorld world;
    FaultCases runner{world, GetParam(), std::getenv("FLOWS_EACH_ALONE") != nullptr};
    const FlowOutcome good = runner.Good();
    const std::vector<FaultCase> cases = CasesOf(good.calls);
};

TEST_P(FaultMatrix, AnswersAsTheTableSays) {
    const std::set<std::string> functions(good.calls.begin(), good.calls.end());
    ASSERT_EQ(cases.size(), 2 * good.calls.size() + functions.size());
    ASSERT_FALSE(IsWrongAnyway(good.transcript)) << Joined(good.transcript);
    if (std::getenv("FLOWS_WRITE_EXPECTED") != nullptr) {
        ASSERT_TRUE(DroppedLines::AreSeen());
        Write();
    } else {
        Compare();
    }
    std::cout << GetParam().name << ": " << good.calls.size() << " agent calls, " << cases.size() << " cases\n";
}

INSTANTIATE_TEST_SUITE_P(Each, FaultMatrix, testing::ValuesIn(AllFlows()),
                         [](const testing::TestParamInfo<FlowKind>& info) { return std::string(info.param.name); });

}  // namespace
