// What the module offers the product's process.
#pragma once

// The agent knows the product by it, letter for letter. It stands nowhere else.
inline constexpr char productId[] = "NEWMODULE1000";

extern "C" {

// Enters the bridge. Call it from the process's load path, never from DllMain. False when that failed; the reason is
// written to the error output.
__declspec(dllexport) bool NewModuleLoad();

// Leaves the bridge. True when no thread is inside the module any more, so that it may be unloaded.
__declspec(dllexport) bool NewModuleUnload();

}  // extern "C"
