// Control functions: what concerns every part of the agent.
#include "ny_simulator.h"
#include "simulator/core/frame/Frame.h"
#include "simulator/core/hostility/Hostility.h"
#include "simulator/core/policy/PolicyStore.h"
#include "simulator/core/scheduler/Scheduler.h"
#include "simulator/core/services/Information.h"

using namespace simulator;

void ny_sim_reset(void) {
    Frame& frame = TheFrame();
    frame.faults.Clear();
    frame.hooks.Clear();
    frame.calls.Clear();
    frame.misuse.Clear();
    ThePolicies().Replace({});
    TheInformation().SetAll({});
    TheScheduler().SetTasks({});
    TheScheduler().ClearReports();
    TheHostility().Clear();
}
