// The functions that the module offers its host.
#pragma once

// The agent knows the product by it, letter for letter.
inline constexpr char myProductId[] = "MYPRODUCT1000";

extern "C" {

__declspec(dllexport) bool MyModuleLoad();
__declspec(dllexport) bool MyModuleUnload();

}  // extern "C"
