// A module that is compiled for Microsoft's C++ ABI, and what a test makes it do. Both sides include this.
#pragma once

#include <cstdint>

#include "VsMsgbus/LpcBuffer.h"

extern "C" {

// Where the module tells what it is called with and what it was answered; on any thread.
typedef void (*MicrosoftModuleTell)(const wchar_t* line, void* userData);

// First of all.
__declspec(dllexport) void MicrosoftModuleTellTo(MicrosoftModuleTell tell, void* userData);

// Enters and leaves the bridge, with a log sink of the module's.
__declspec(dllexport) bool MicrosoftModuleEnter(const char* productId, uint32_t serviceMask);
__declspec(dllexport) bool MicrosoftModuleExit(const char* productId);

// Registers what the module answers the agent with, and takes it back: a pair for each service, each in a file of the
// module's own.
__declspec(dllexport) bool MicrosoftModuleOfferProperties(const wchar_t* productId);
__declspec(dllexport) bool MicrosoftModuleWithdrawProperties(const wchar_t* productId);
__declspec(dllexport) bool MicrosoftModuleOfferPolicies(const wchar_t* productId);
__declspec(dllexport) bool MicrosoftModuleWithdrawPolicies(const wchar_t* productId);
__declspec(dllexport) bool MicrosoftModuleOfferTasks(const wchar_t* productId);
__declspec(dllexport) bool MicrosoftModuleWithdrawTasks(const wchar_t* productId);
__declspec(dllexport) bool MicrosoftModuleOfferUpdates(const wchar_t* productId);
__declspec(dllexport) bool MicrosoftModuleWithdrawUpdates(const wchar_t* productId);

// Reads what the agent knows of itself.
__declspec(dllexport) void MicrosoftModuleReadInformation();

// Releases a buffer as a module does: through the member that the bridge exports.
__declspec(dllexport) void MicrosoftModuleReleaseBuffer(VsKitMsgbus::lpc_buffer* buffer);

}  // extern "C"
