// Control functions: what concerns every part of the agent.
#include "Frame.h"
#include "Hostility.h"
#include "Information.h"
#include "PolicyStore.h"
#include "Scheduler.h"
#include "ny_simulator.h"

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
