#pragma once

#include <ostream>
#include <string>
#include <tuple>
#include <vector>

#include "VsMsgbus.h"
#include "support/BridgeTest.h"
#include "support/KeptHandles.h"
#include "support/Services.h"

// A fault and its outcome: one agent function answers a code in one step of a product's life.
struct FaultRow {
    const char* function;
    std::vector<std::string> lines;               // in the sink when the step is over; "<code>" stands for the code
    std::vector<std::string> linesOfRepair = {};  // in the sink when the agent was upgraded after that
    const char* lastCall = nullptr;  // of the step, when the fault cuts it short, and how often that was called
    size_t lastCallCount = 1;
    bool isEntered = true;   // what Entry answers
    size_t keptHandles = 0;  // those that the agent refused to release
};

inline void PrintTo(const FaultRow& row, std::ostream* out) {
    *out << row.function;
}

// The functions of a step as its table of faults has them: what must be the functions that the step calls.
inline std::vector<std::string> FunctionsOf(const std::vector<FaultRow>& rows) {
    std::vector<std::string> functions;
    for (const FaultRow& row : rows) {
        functions.push_back(row.function);
    }
    return functions;
}

// The codes tried for every function: one of its own, a negative one, and two that the bridge answers itself.
inline auto FaultCodes() {
    return testing::Values(77, -5, NY_INVALID_ARGUMENT, NY_FUNCTION_MISSING);
}

using FaultParameter = std::tuple<FaultRow, int32_t>;

inline std::string NameOfFault(const testing::TestParamInfo<FaultParameter>& info) {
    const int32_t code = std::get<int32_t>(info.param);
    return std::string(std::get<FaultRow>(info.param).function) + (code < 0 ? "_minus" : "_") +
           std::to_string(code < 0 ? -code : code);
}

// A test of one fault with an agent that is there.
class FaultTest : public InstalledAgentTest, public testing::WithParamInterface<FaultParameter> {
protected:
    const FaultRow& Row() const { return std::get<FaultRow>(GetParam()); }
    int32_t Code() const { return std::get<int32_t>(GetParam()); }

    void Fail(ny_sim_fault_mode mode = NY_SIM_FROM_THEN_ON) const {
        ASSERT_EQ(ny_sim_fail_call(Row().function, 1, Code(), mode), NY_OK);
    }

    std::vector<std::string> Expected(std::vector<std::string> lines) const {
        for (std::string& line : lines) {
            if (const size_t place = line.find("<code>"); place != std::string::npos) {
                line.replace(place, 6, std::to_string(Code()));
            }
        }
        return lines;
    }

    // After the fault is gone and the agent was upgraded, everything works.
    void ExpectRepairByUpgrade() {
        ny_sim_clear_faults();
        UpgradeAndWait("5.9.0");
        EXPECT_EQ(Ask("PRODUCT1000"), answered);
        EXPECT_EQ(sink.log.Take(), Expected(Row().linesOfRepair));
    }

    // The same after everybody left and came again.
    void ExpectRepairByNewEntry() {
        ny_sim_clear_faults();
        Product again("PRODUCT1000", &sink);
        EXPECT_TRUE(again.IsEntered());
        EXPECT_EQ(Ask("PRODUCT1000"), answered);
        again.Exit();
        EXPECT_EQ(sink.log.Take(), std::vector<std::string>());
    }

    KeptHandles kept;
    Registration registration{"PRODUCT1000", collector};
};

inline constexpr char notStartedLine[] = "3: NY log message, [ny_client] falied to start ny client.";
inline constexpr char alreadyStoppedLine[] = "3: NY log message, [ny_client] ny client already stopped.";
inline const std::string notReleasedLine = NotReleasedLine(8192, "<code>");
inline constexpr char notStoppedLine[] =
    "3: Successfully release all VsMsgbus iosFailed to stop VsMsgbus, exception:[Unknown exception]";
