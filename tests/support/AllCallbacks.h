#pragma once

#include "ny_simulator.h"

// The callbacks that the simulated agent can call late or from inside register, in the order of their numbers.
inline constexpr ny_sim_callback allCallbacks[] = {NY_SIM_CALL_PROPERTIES,
                                                   NY_SIM_CALL_POLICY,
                                                   NY_SIM_CALL_TASK_EXECUTE,
                                                   NY_SIM_CALL_TASK_STOP,
                                                   NY_SIM_CALL_TASK_REMOVE,
                                                   NY_SIM_CALL_TASK_UPDATE_STATUS,
                                                   NY_SIM_CALL_UPDATE_NOTIFY,
                                                   NY_SIM_CALL_SET_PRODUCT_INFO,
                                                   NY_SIM_CALL_GET_PRODUCT_INFO,
                                                   NY_SIM_CALL_UPDATE_EVENT,
                                                   NY_SIM_CALL_LOG};
