// Every flow with every agent call in it failing in every way. The cases come from the recorded calls of a good run, so
// that a new call is covered by itself; what is expected of each stands in expected/<flow>.txt.
//
// Runs the cases of each call that fails once, many of them in one session of the bridge. With FLOWS_WHOLE=1, runs all,
// each in a session of its own. With FLOWS_WRITE_EXPECTED=1, writes the tables anew.
#include <algorithm>
#include <cstddef>
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

    // Runs the cases and has `look(fault, transcript)` judge each.
    template <class Look>
    void ForEachCase(Look&& look) {
        for (const FaultCase& fault : cases) {
            if (!isWriting && !isWhole && fault.mode != FaultCase::Mode::Once) {
                continue;
            }
            ++casesRun;
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
            if (isWhole || name.starts_with("once ")) {
                unmet.insert(name);
            }
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

    const bool isWhole = std::getenv("FLOWS_WHOLE") != nullptr;
    const bool isWriting = std::getenv("FLOWS_WRITE_EXPECTED") != nullptr;
    size_t casesRun = 0;
    FlowWorld world;
    FaultCases runner{world, GetParam(), isWhole};
    const FlowOutcome good = runner.Good();
    const std::vector<FaultCase> cases = CasesOf(good.calls);
};

TEST_P(FaultMatrix, AnswersAsTheTableSays) {
    const std::set<std::string> functions(good.calls.begin(), good.calls.end());
    ASSERT_EQ(cases.size(), 2 * good.calls.size() + functions.size());
    ASSERT_FALSE(IsWrongAnyway(good.transcript)) << Joined(good.transcript);
    if (isWriting) {
        ASSERT_TRUE(DroppedLines::AreSeen());
        Write();
    } else {
        Compare();
    }
    ASSERT_GE(casesRun, isWhole ? cases.size() : good.calls.size());
    std::cout << "fault matrix: " << GetParam().name << ": " << casesRun << " of " << cases.size() << " cases of "
              << good.calls.size() << " agent calls\n";
}

INSTANTIATE_TEST_SUITE_P(Each, FaultMatrix, testing::ValuesIn(AllFlows()),
                         [](const testing::TestParamInfo<FlowKind>& flow) { return std::string(flow.param.name); });

}  // namespace
