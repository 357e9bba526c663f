// What the bridge does with the agent, as the same agent calls in the least code that does the job.
#pragma once

#include <windows.h>

#include <filesystem>
#include <string>
#include <string_view>

#include "VsMsgbus/CollectProperties.h"
#include "VsMsgbus/EnforcePolicy.h"
#include "agent/ny_agent.h"

namespace bench {

// The agent's folder as the registry has it.
std::filesystem::path RegisteredFolder();

// Opens the library of the agent's texts in this folder, and resolves what the functions below call of it. The caller
// may close it.
HMODULE OpenFloorTexts(const std::filesystem::path& folder);

// Resolves what the functions below call from the libraries of this folder, and keeps them open.
void OpenFloorAgent(const std::filesystem::path& folder);

// The agent's conversions into a standard string.
std::wstring FloorWiden(std::string_view text);
std::string FloorNarrow(std::wstring_view text);

// Has the module set its properties, and gives each to the agent.
void FloorCollect(VsKitMsgbus::INYCollectProperties& module, ny_property_bag_t* bag);

using FloorCallbacks = VsKitMsgbus::INYEnforcePolicy::IPolicyBag::ICallbacks;

// Tells the callbacks of a product's policies; of those of a user unless that is null.
void FloorWalk(ny_client_t* client, const wchar_t* productId, const wchar_t* account, FloorCallbacks& callbacks);

// The product's digests, one behind the other.
std::string FloorDigest(ny_client_t* client, const char* productId);

// Tells the agent how a task stands that says its own id.
void FloorReportTask(ny_client_t* client, ny_task_t* task, int32_t status);

// The text of one key of the agent's information, in memory of malloc.
wchar_t* FloorInformation(ny_client_t* client, const char* key);

// Encrypts the data into `out`, which has room for it. The size of the result.
uint32_t FloorEncrypt(ny_client_t* client, const unsigned char* data, uint32_t size, unsigned char* out);

}  // namespace bench
