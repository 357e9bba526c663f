// Every export is called inside every callback: on the callback's thread, and on another one that the callback waits
// for. Nothing crashes, everything ends within the promised time, nothing is left with the agent, and the products can
// enter and be asked again.
#include <gmock/gmock.h>

#include <atomic>
#include <thread>

#include "library/ExpectedExports.h"
#include "reentrancy/Cell.h"
#include "reentrancy/ExpectedCallbacks.h"
#include "support/AgentCalls.h"
#include "support/AgentFunctions.h"
#include "support/AgentRequest.h"
#include "support/Event.h"
#include "support/OnPurpose.h"
#include "support/Watchdog.h"

namespace {

using std::chrono::steady_clock;

// Far below the 15 seconds that a wait of the bridge's may take.
constexpr std::chrono::seconds atOnce{10};
// One such wait, and what a loaded machine adds.
constexpr std::chrono::seconds oneWait{20};
// How long a callback lets what may wait for it wait: not long, or until the bridge's own wait must have ended.
constexpr std::chrono::milliseconds shortPatience{50};
constexpr std::chrono::seconds longPatience{20};
// Three waits of the bridge's and some.
constexpr std::chrono::seconds cellLimit{60};

class Matrix : public testing::TestWithParam<Cell> {
protected:
    static void SetUpTestSuite() { world = new ReentrancyWorld; }
    static void TearDownTestSuite() {
        delete std::exchange(world, nullptr);
        isEntered = false;
    }

    void Run();

private:
    void Prepare();
    void Trigger();
    void TriggerInRegister(ny_sim_register_call mode);
    void TriggerWhileTheOtherRegisters(size_t nth, const std::function<void()>& makeItRegister);
    void CleanUp();
    void InCallback();
    void CallOnOtherThread();
    void UpgradeTheAgent();
    // The last Exit waits for the watcher, which may be waiting for the callback.
    std::chrono::seconds LimitOnSameThread() const;
    // A Remove waits a limited time; what else may wait here waits as long as the agent does.
    std::chrono::milliseconds PatienceOfCallback() const;

    const Cell& cell = GetParam();
    std::thread other;
    Event hasEnded;
    // Every export is called inside every callback, whether it makes sense there or not, and may wait there.
    const OnPurpose usualMistakes{"CALLBACK-THREW", "ENTRY-FAILED",      "ENTRY-NO-SINK",  "EXIT-OTHER-INSTANCE",
                                  "EXIT-UNKNOWN",   "EXIT-WHILE-CALLED", "NOT-ENTERED",    "NOTHING-DONE",
                                  "REMOVE-GAVE-UP", "REMOVE-INSIDE",     "REMOVE-UNKNOWN", "SET-TWICE",
                                  "CALLBACK-SLOW",  "INTERFACE-MISSING", "SINK-SLOW",      "SINK-TAKEN",
                                  "WAIT-CYCLE"};

    static inline ReentrancyWorld* world = nullptr;
    // The first product is entered, alone and for everything.
    static inline bool isEntered = false;
};

void Matrix::Run() {
    const Watchdog watchdog(NameOf(cell), cellLimit);
    Prepare();
    world->trap.Set(cell.callback->name, cell.callback->line, [this] { InCallback(); });
    Trigger();
    EXPECT_TRUE(world->trap.HasSprung()) << "the callback did not come";
    if (other.joinable()) {
        EXPECT_TRUE(hasEnded.Wait()) << "the export has not ended although the callback has";
        other.join();
    }
    world->trap.Clear();
    CleanUp();
}

void Matrix::Prepare() {
    const bool isInRegister = cell.variant == Variant::InRegister || cell.variant == Variant::InRegisterAside;
    const bool entersLater = cell.callback->entersItself || isInRegister;
    if (entersLater && isEntered) {
        world->LeaveAll();
        isEntered = false;
        world->ExpectNothingLeft();
    }
    if (!isEntered) {
        world->PutAgent();
    }
    ny_sim_set_one_lock(cell.variant == Variant::OneLock ? 1 : 0);
    world->hasOtherProduct = cell.variant != Variant::OtherEnters &&
                             (cell.exportCase->needsOtherProduct || cell.variant == Variant::WatcherRegisters);
    if (!entersLater && !isEntered) {
        world->EnterAll();
        isEntered = true;
    } else if (world->hasOtherProduct && !cell.callback->entersItself) {
        EXPECT_TRUE(world->EnterProduct(ReentrancyWorld::otherProduct));
    }
}

void Matrix::Trigger() {
    switch (cell.variant) {
        case Variant::InRegister: return TriggerInRegister(NY_SIM_ON_SAME_THREAD);
        case Variant::InRegisterAside: return TriggerInRegister(NY_SIM_ON_OTHER_THREAD);
        case Variant::OtherEnters:
            return TriggerWhileTheOtherRegisters(1, [] { world->EnterProduct(ReentrancyWorld::otherProduct); });
        case Variant::WatcherRegisters:
            // The watcher begins with the first product.
            return TriggerWhileTheOtherRegisters(2, [] { world->PutNewerAgent(); });
        default: return cell.callback->trigger(*world);
    }
}

void Matrix::TriggerWhileTheOtherRegisters(size_t nth, const std::function<void()>& makeItRegister) {
    std::atomic<size_t> count = 0;
    Event isOver;
    const AgentHook hook(registerProvider, [&] {
        if (++count == nth) {
            cell.callback->trigger(*world);
            isOver.Set();
        }
    });
    makeItRegister();
    EXPECT_TRUE(ReentrancyWorld::WaitForWatcher([&](auto limit) { return isOver.Wait(limit); }));
}

void Matrix::TriggerInRegister(ny_sim_register_call mode) {
    world->Register();
    ASSERT_EQ(ny_sim_call_in_register(*cell.callback->call, mode), NY_OK);
    world->EnterProduct();
    ny_sim_call_in_register(*cell.callback->call, NY_SIM_NO_CALL);
}

void Matrix::CleanUp() {
    ny_sim_set_one_lock(0);
    const bool changesMore = cell.variant == Variant::Upgrade || cell.variant == Variant::WatcherRegisters ||
                             cell.variant == Variant::OtherEnters;
    if (isEntered && cell.exportCase->leaves != Leaves::OtherProducts && !changesMore) {
        if (cell.exportCase->leaves == Leaves::NoRegistration) {
            TrappedModule::Remove(ReentrancyWorld::wideProduct);
            world->Register();
        }
        world->ExpectOnlyTheClient();
        return;
    }
    isEntered = false;
    world->hasOtherProduct = false;
    world->LeaveAll();
    world->ExpectNothingLeft();
    world->PutAgent();
    world->EnterAll();
    isEntered = true;
    EXPECT_EQ(AgentRequest(ReentrancyWorld::product).Answer(), NY_OK);
}

void Matrix::InCallback() {
    if (cell.variant == Variant::Upgrade) {
        UpgradeTheAgent();
    }
    if (cell.thread == CallingThread::Other) {
        return CallOnOtherThread();
    }
    const auto begin = steady_clock::now();
    cell.exportCase->call(*world);
    EXPECT_LT(steady_clock::now() - begin, LimitOnSameThread());
}

void Matrix::CallOnOtherThread() {
    other = std::thread([this] {
        cell.exportCase->call(*world);
        hasEnded.Set();
    });
    const bool mayWait = MayWait(cell);
    const bool ended = hasEnded.Wait(mayWait ? PatienceOfCallback() : atOnce);
    EXPECT_TRUE(ended || (mayWait && PatienceOfCallback() == shortPatience))
        << "the export waits for the callback, which waits for it";
}

std::chrono::seconds Matrix::LimitOnSameThread() const {
    const bool isWatcherBusy = cell.variant == Variant::Upgrade || cell.variant == Variant::WatcherRegisters;
    return isWatcherBusy && MayWait(cell) ? oneWait : atOnce;
}

std::chrono::milliseconds Matrix::PatienceOfCallback() const {
    return IsWholeFormWanted() && cell.variant == Variant::Plain && cell.exportCase->leaves == Leaves::NoRegistration
               ? longPatience
               : shortPatience;
}

// The watcher has then seen it, or is kept from it by what this cell is about.
void Matrix::UpgradeTheAgent() {
    ny_sim_clear_calls();
    world->PutNewerAgent();
    ny_sim_wait_calls("ny_msgbus_disable_watcher", 1, 300);
}

TEST_P(Matrix, IsHarmless) {
    Run();
}

INSTANTIATE_TEST_SUITE_P(Reentrancy, Matrix, testing::ValuesIn(AllCells()),
                         [](const testing::TestParamInfo<Cell>& test) { return NameOf(test.param); });

template <class Record>
std::vector<std::string> NamesOf(std::span<const Record> records, const char* Record::*name) {
    std::vector<std::string> names;
    for (const Record& record : records) {
        if (names.empty() || names.back() != record.*name) {
            names.emplace_back(record.*name);
        }
    }
    return names;
}

TEST(ReentrancyMatrix, HasARowForEveryExportAndAColumnForEveryCallback) {
    EXPECT_THAT(NamesOf(ExportCases(), &ExportCase::exportName), testing::UnorderedElementsAreArray(expectedExports));
    EXPECT_THAT(NamesOf(CallbackKinds(), &CallbackKind::name), testing::UnorderedElementsAreArray(expectedCallbacks));
}

}  // namespace
