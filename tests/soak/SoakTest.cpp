// The life-cycle soak: a plan's operations on one thread, beside threads that call every export and an agent that calls
// back all the time.
#include <gmock/gmock.h>

#include <iostream>

#include "library/ExpectedExports.h"
#include "ny_sim_hostile.h"
#include "ny_simulator.h"
#include "soak/Activity.h"
#include "soak/Conductor.h"
#include "soak/Crowd.h"
#include "soak/ExportCalls.h"
#include "soak/Hostility.h"
#include "soak/Level.h"
#include "soak/Options.h"
#include "soak/Plan.h"
#include "support/AllCallbacks.h"
#include "support/OnPurpose.h"

namespace {

using std::chrono::steady_clock;

// Longer than three waits of the bridge's of 15 seconds, one after the other: nothing that the bridge does takes as
// long.
constexpr std::chrono::seconds hangLimit{60};
constexpr std::chrono::seconds progressInterval{5};
// Bytes for each handle that the agent refused to take back and so keeps, with all that it refers to.
constexpr size_t mostOfAHandle = 1024;
// Bytes in which the checking bridge remembers the last objects that it lent and was given.
constexpr size_t mostOfTheChecks = 512 * 1024;

size_t RememberedRegistrations() {
    size_t count = 0;
    for (const ny_sim_callback callback : allCallbacks) {
        for (const std::string& id : AllProductIds()) {
            count += ny_sim_remembered_count(callback, id.c_str());
        }
    }
    return count;
}

class Soak : public testing::Test {
protected:
    // Operations of the plan beside the crowd, then the end of all; the level after that.
    Level Run(uint64_t count);

    void Do(const Operation& operation);
    void TellProgress() const;
    [[noreturn]] void Hang(const std::string& report) const;

    const uint64_t seed = Options().seed;
    const steady_clock::time_point begin = steady_clock::now();
    AgentOfTheSoak agent;
    Watchdog watchdog{hangLimit, [this](const std::string& report) { Hang(report); }};
    Activity& activity = watchdog.Add("the plan");
    Plan plan{seed};
    Conductor conductor{agent};
    Hostility hostility{seed, Options().hostile, conductor};
    // The plan and the crowd do whatever can be called, in any order; the modules throw now and then.
    const OnPurpose mistakes{"CALLBACK-THREW", "ENTRY-FAILED",    "ENTRY-NO-SINK", "EXIT-UNKNOWN", "INTERFACE-MISSING",
                             "MASK-EMPTY",     "MASK-MISSING",    "NOT-ENTERED",   "NOTHING-DONE", "PROPERTY-NULL",
                             "REMOVE-INSIDE",  "REMOVE-UNKNOWN",  "SET-NULL",      "SET-TWICE",    "SINK-TAKEN",
                             "TASK-STATUS",    "TASK-WITHOUT-END"};
    uint64_t done = 0;
    std::chrono::milliseconds longest{0};
    std::string longestText;
    steady_clock::time_point lastTold = begin;
};

Level Soak::Run(uint64_t count) {
    {
        const Crowd crowd(seed + done + 1, watchdog);
        for (uint64_t i = 0; i < count && !HasFailure(); ++i) {
            Do(plan.Next());
        }
        activity.Begin("end all");
        hostility.End();
        conductor.EndAll();
        activity.Begin("end of the crowd");
    }
    activity.End();
    // The simulated agent keeps records for the tests: they are cleared before the level is measured.
    hostility.ForgetRegistrations();
    ny_sim_clear_calls();
    ny_sim_clear_task_reports();
    EXPECT_EQ(RememberedRegistrations(), 0U);
    return MeasureLevel();
}

void Soak::Do(const Operation& operation) {
    const std::string text = std::to_string(++done) + ", " + TextOf(operation);
    SCOPED_TRACE("seed " + std::to_string(seed) + ", operation " + text);
    activity.Begin("operation " + text);
    const auto started = steady_clock::now();
    hostility.Act();
    conductor.Do(operation);
    const auto taken = std::chrono::duration_cast<std::chrono::milliseconds>(steady_clock::now() - started);
    activity.End();
    if (taken > longest) {
        longest = taken;
        longestText = text;
    }
    // The simulated agent's records for tests would grow without end. Calls since a change are kept for the report.
    if (conductor.IsCertain()) {
        ny_sim_clear_calls();
    }
    ny_sim_clear_task_reports();
    if (steady_clock::now() - lastTold >= progressInterval) {
        lastTold = steady_clock::now();
        TellProgress();
    }
}

void Soak::TellProgress() const {
    uint64_t calls = 0;
    for (const auto& [name, count] : AllCalls()) {
        calls += count;
    }
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(steady_clock::now() - begin);
    std::cout << done << " of " << Options().operations << " operations, " << calls << " calls of exports, "
              << CallbacksOfTheAgent() << " callbacks of the agent, " << CallsOfModules() << " calls of modules, "
              << seconds.count() << " s" << std::endl;
}

// Threads that hang cannot be ended in order.
void Soak::Hang(const std::string& report) const {
    std::cout << "seed " << seed << ": nothing moves\n" << report << std::flush;
    EndProcessAtOnce(3);
}

TEST_F(Soak, LeavesEverythingAsItWas) {
    ASSERT_EQ(ny_sim_live_handles(NY_SIM_ANY), 0U);
    const uint64_t warmUp =
        std::max<uint64_t>(Options().operations / 10, std::min<uint64_t>(Options().operations, 100));
    conductor.CheckThatEverythingAnswers();
    const Level before = Run(warmUp);
    const Level after = Run(Options().operations - warmUp);
    TellProgress();
    if (Options().hostile.Any()) {
        std::cout << hostility.Summary() << "\n";
    }
    std::cout << "longest: " << longest.count() << " ms, operation " << longestText << "\nafter " << warmUp
              << " operations: " << before << "\nat the end: " << after << std::endl;
    SCOPED_TRACE("seed " + std::to_string(seed));
    const size_t keptBytes = conductor.Left().Of(NY_SIM_ANY) * mostOfAHandle;
    EXPECT_LE(after.handles, before.handles + HandleTolerance(Options().operations));
    EXPECT_EQ(after.modules, before.modules);
    const size_t bytesOfChecks = IsCheckingBridge() ? mostOfTheChecks : 0;
    EXPECT_LE(after.heapBytes, before.heapBytes + HeapTolerance(Options().operations) + RoomTakenInAdvance() +
                                   keptBytes + bytesOfChecks);
    ForEachKindOfHandle([&](ny_sim_handle_kind kind) {
        EXPECT_EQ(ny_sim_live_handles(kind), conductor.Left().Of(kind)) << "of kind " << kind;
    });
    EXPECT_EQ(ny_sim_started_clients(), 0U);
    EXPECT_EQ(ny_sim_lent_tasks(), 0U);
    EXPECT_EQ(ny_sim_misuse_count(), 0U) << ny_sim_last_misuse();
    EXPECT_FALSE(AgentOfTheSoak::IsLoaded());
    conductor.CheckThatEverythingAnswers();

    std::vector<std::string_view> called;
    for (const auto& [name, count] : AllCalls()) {
        called.push_back(name);
    }
    EXPECT_THAT(called, testing::UnorderedElementsAreArray(expectedExports));
}

std::vector<std::string> FirstOperations(uint64_t seed) {
    Plan plan(seed);
    std::vector<std::string> texts;
    for (int i = 0; i < 1000; ++i) {
        texts.push_back(TextOf(plan.Next()));
    }
    return texts;
}

TEST(SoakPlan, FollowsFromItsSeed) {
    EXPECT_EQ(FirstOperations(7), FirstOperations(7));
    EXPECT_NE(FirstOperations(7), FirstOperations(8));
    // The same with every compiler.
    EXPECT_EQ(FirstOperations(7).front(), "enter PRODUCT0 for 14336");
    EXPECT_EQ(FirstOperations(7).back(), "enter PRODUCT5 for 4352");
}

TEST(SoakWatchdog, TellsWhichThreadHangsAndWhatTheOthersAreAt) {
    LineLog reports;
    Watchdog watchdog(std::chrono::milliseconds(100), [&](const std::string& report) { reports.Add(report); });
    watchdog.Add("idle").End();
    watchdog.Add("stuck").Begin("waiting for ever");
    EXPECT_TRUE(reports.WaitForSize(1));
    EXPECT_EQ(reports.Lines().front(), "stuck hangs: waiting for ever\n  idle: nothing\n  stuck: waiting for ever\n");
}

TEST(SoakWatchdog, LeavesThreadsInPeaceThatGoOn) {
    LineLog reports;
    {
        Watchdog watchdog(std::chrono::milliseconds(500), [&](const std::string& report) { reports.Add(report); });
        Activity& activity = watchdog.Add("busy");
        const Event never;
        for (int i = 0; i < 20; ++i) {
            activity.Begin("the same");
            never.Wait(std::chrono::milliseconds(50));
        }
    }
    EXPECT_EQ(reports.Lines().size(), 0U);
}

}  // namespace
