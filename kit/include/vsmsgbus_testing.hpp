/// @file
/// A machine of a test's own with the simulated agent on it, one line for each thing that the agent or its installer
/// does: vsmsgbus::testing::Machine.
///
/// Header only, C++20, above ny_setup.dll and ny_simulator.dll; with any framework for tests, or none. It knows nothing
/// of how the module is made: with vsmsgbus.hpp or on the plain interfaces, of any ABI.
///
/// ```cpp
/// vsmsgbus::testing::Machine machine;
/// machine.InstallAgent();
/// MyModuleLoad();
/// EXPECT_EQ(machine.AskProperties("MYPRODUCT1000").Value("General", "Version"), "1.0");
/// MyModuleUnload();
/// machine.ExpectNothingLeft();
/// ```
///
/// Conventions
///
///  1. What cannot be done, does not come in time or is answered as a failure throws vsmsgbus::testing::Failure, whose
///     what() says what was waited for, and what was there instead.
///  2. Texts are UTF-8.
///  3. Functions that wait take a limit; a limit that has passed is a failure.
///  4. The agent calls the module on threads of its own. A Machine is used on one thread at a time.
#pragma once

#include "vsmsgbus_testing/Failure.hpp"
#include "vsmsgbus_testing/Leftovers.hpp"
#include "vsmsgbus_testing/Machine.hpp"
#include "vsmsgbus_testing/Properties.hpp"
#include "vsmsgbus_testing/Registrations.hpp"
#include "vsmsgbus_testing/Tasks.hpp"
#include "vsmsgbus_testing/Updates.hpp"
