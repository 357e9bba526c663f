// A module of an endpoint security product that tells the management agent about its machine and scans folders for it.
#pragma once

extern "C" {

// Where the module says what it does. `actor` is "module", or "bridge" for a log line that the bridge wrote to the
// module's sink; both texts are UTF-8. Called on any thread.
typedef void (*SampleModuleSay)(const char* actor, const char* line, void* userData);

// The product that the module is.
inline constexpr char sampleProductId[] = "SAMPLE__1000";

// Enters the bridge and registers for all that the agent asks of a module. False when the bridge refused.
bool SampleModuleLoad(SampleModuleSay say, void* userData) noexcept;

// Has the module use the agent's information and crypto. False when it is not loaded or the agent failed.
bool SampleModuleUseAgent() noexcept;

// Has the module ask the agent for its policies again, and waits until it has enforced them. False when that did not
// come to pass.
bool SampleModuleEnforceAgain() noexcept;

// Takes everything back. After this the module may be unloaded.
bool SampleModuleUnload() noexcept;

}  // extern "C"
