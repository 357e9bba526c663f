#pragma once

#include "Speaker.h"
#include "vsmsgbus.hpp"

// Runs one of the agent's on-demand scans, on the agent's thread, and reports after each file when the task wants that.
// Failed when the scan was stopped or has found no file.
vsmsgbus::TaskResult RunScan(vsmsgbus::Task& task, const Speaker& speaker);
