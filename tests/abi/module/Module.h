// A module, and what a test makes it do. Compiled for mingw-w64's C++ ABI and for Microsoft's; the test includes this
// for the types of the functions, which it looks up by name.
#pragma once

#include <cstdint>

#include "VsMsgbus/LpcBuffer.h"

extern "C" {

// The C++ ABI that the module was compiled for: "gnu" or "microsoft".
__declspec(dllexport) const char* ModuleAbi();

// Where the module tells what it is called with and what it was answered; on any thread.
typedef void (*ModuleTell)(const wchar_t* line, void* userData);

// First of all.
__declspec(dllexport) void ModuleTellTo(ModuleTell tell, void* userData);

// Enters and leaves the bridge, with a log sink of the module's.
__declspec(dllexport) bool ModuleEnter(const char* productId, uint32_t serviceMask);
__declspec(dllexport) bool ModuleExit(const char* productId);

// Registers what the module answers the agent with, and takes it back: a pair for each service, each in a file of the
// module's own.
__declspec(dllexport) bool ModuleOfferProperties(const wchar_t* productId);
__declspec(dllexport) bool ModuleWithdrawProperties(const wchar_t* productId);
__declspec(dllexport) bool ModuleOfferPolicies(const wchar_t* productId);
__declspec(dllexport) bool ModuleWithdrawPolicies(const wchar_t* productId);
__declspec(dllexport) bool ModuleOfferTasks(const wchar_t* productId);
__declspec(dllexport) bool ModuleWithdrawTasks(const wchar_t* productId);
__declspec(dllexport) bool ModuleOfferUpdates(const wchar_t* productId);
__declspec(dllexport) bool ModuleWithdrawUpdates(const wchar_t* productId);

// Has the next call for properties leave the bridge with that product.
__declspec(dllexport) void ModuleExitWhenAsked(const char* productId);

// In the place of OfferPolicies: an enforcer that reads its digests natively, as a std::string.
__declspec(dllexport) bool ModuleOfferDigestReader(const wchar_t* productId);

// Has the agent notify the product of its policies.
__declspec(dllexport) void ModuleEnforceLocally(const wchar_t* productId);

// Has the bridge free what a task carries.
__declspec(dllexport) void ModuleFreeTaskCookie(const wchar_t* productId, wchar_t* cookie);

// A product of the C++ layer, with properties, policies and updates.
__declspec(dllexport) bool ModuleLoadLayer(const char* productId);
__declspec(dllexport) bool ModuleUnloadLayer();

// Reads what the agent knows of itself.
__declspec(dllexport) void ModuleReadInformation();

// Encrypts, decrypts and hashes a text.
__declspec(dllexport) void ModuleUseCrypto();

// Sees and writes the lines of the host's log.
__declspec(dllexport) void ModuleListenToHostLog(bool listens);
__declspec(dllexport) void ModuleWriteToHostLog();

// Has the agent's value of that key written into the buffer.
__declspec(dllexport) void ModuleReadKey(const char* key, VsKitMsgbus::lpc_buffer* buffer);

// Releases a buffer as a module does: through the member that the bridge exports.
__declspec(dllexport) void ModuleReleaseBuffer(VsKitMsgbus::lpc_buffer* buffer);

}  // extern "C"
