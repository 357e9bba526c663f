// The exports of the checking DLL that do more than the bridge's: each stands under the name of the bridge's one, which
// it calls, with "Checked" in front.
#pragma once

#include "VsMsgbus.h"
#include "VsMsgbus/ny_dl.h"
#include "VsMsgbus/ny_temp_buffer.h"

extern "C" {

bool CheckedVsMsgbusEntry(const char* productId, uint32_t serviceMask, VsKitMsgbus::ILogSink* logSink,
                          VsMsgbus** outInstance) noexcept;
bool CheckedVsMsgbusExit(const char* productId, VsMsgbus* instance) noexcept;
VsMsgbusClientRecord* CheckedGetMsgbusClient() noexcept;
void CheckedLpcBufferRelease(VsKitMsgbus::lpc_buffer* buffer) noexcept;

bool CheckedVsKitMsgbusSetCollectProperties(const wchar_t* productId, VsKitMsgbus::INYCollectProperties* collector,
                                            void* sink) noexcept;
bool CheckedVsKitMsgbusRemoveCollectProperties(const wchar_t* productId) noexcept;
bool CheckedVsKitMsgbusSetEnforcePolicy(const wchar_t* productId, VsKitMsgbus::INYEnforcePolicy* enforcer,
                                        void* sink) noexcept;
bool CheckedVsKitMsgbusRemoveEnforcerPolicy(const wchar_t* productId) noexcept;
bool CheckedVsKitMsgbusSetTaskEnforcer(const wchar_t* productId, VsKitMsgbus::INYTaskEnforcer* enforcer,
                                       void* context) noexcept;
bool CheckedVsKitMsgbusRemoveTaskEnforcer(const wchar_t* productId) noexcept;
bool CheckedVsKitMsgbusSetUpdateNotify(const wchar_t* productId, VsKitMsgbus::INYUpdateNotifyCallback* callback,
                                       void* context) noexcept;
bool CheckedVsKitMsgbusRemoveUpdateNotify(const wchar_t* productId) noexcept;

int CheckedVsKitEnforceLocalPolicy(const wchar_t* productId) noexcept;
void CheckedUpdateMsgbusTaskStatus(const wchar_t* taskId, int status) noexcept;
void CheckedVsKitHealthCheckRegisterCB(const wchar_t* name, VsKitHealthCheckCallback callback) noexcept;

int32_t CheckedVsKitMsgbusEncryptData(const unsigned char* data, unsigned int size, unsigned char* out,
                                      unsigned int* outSize, uint64_t type) noexcept;
int32_t CheckedVsKitMsgbusDecryptData(const unsigned char* data, unsigned int size, unsigned char* out,
                                      unsigned int* outSize, uint64_t type) noexcept;
int32_t CheckedVsKitMsgbusHashBuffer(const unsigned char* data, unsigned int size, unsigned char* out,
                                     unsigned int* outSize, uint64_t type) noexcept;
int32_t CheckedVsKitMsgbusIsRunningInFIPSMode(...) noexcept;
int32_t CheckedVsKitMsgbusDecodeData(...) noexcept;
int32_t CheckedVsKitMsgbusEncodeData(...) noexcept;
int32_t CheckedVsKitMsgbusDecodeAndDecryptData(...) noexcept;
int32_t CheckedVsKitMsgbusEncryptAndEncodeData(...) noexcept;

int32_t CheckedVsKitMsgbusGetInformation(unsigned int index, VsKitMsgbus::lpc_buffer* out) noexcept;
int32_t CheckedVsKitMsgbusGetInfoByKeyName(const char* key, VsKitMsgbus::lpc_buffer* out) noexcept;
int32_t CheckedVsKitMsgbusManagedMode(unsigned int* mode) noexcept;
void CheckedVsKitMsgbusFreeTaskCookie(const wchar_t* productId, void* cookie) noexcept;

uint32_t Checkedny_dl_open(const char* path, unsigned flags, ny_dl_t* lib) noexcept;
void* Checkedny_dl_sym(ny_dl_t* lib, const char* name) noexcept;
void Checkedny_dl_close(ny_dl_t* lib) noexcept;
uint32_t Checkedny_dl_error(char* buffer, int size) noexcept;
void Checkedny_temp_buffer_init(ny_temp_buffer_t* buffer) noexcept;
uint32_t Checkedny_temp_buffer_reserve(ny_temp_buffer_t* buffer, size_t size) noexcept;
void* Checkedny_temp_buffer_get(ny_temp_buffer_t* buffer) noexcept;
size_t Checkedny_temp_buffer_capacity(const ny_temp_buffer_t* buffer) noexcept;
uint32_t Checkedny_temp_buffer_copy(ny_temp_buffer_t* dest, const ny_temp_buffer_t* source) noexcept;
void** Checkedny_temp_buffer_address_of(ny_temp_buffer_t* buffer) noexcept;
void Checkedny_temp_buffer_uninit(ny_temp_buffer_t* buffer) noexcept;

// How many findings there were, those not told again included: of the rule of that name, or of all for null. Of this
// DLL alone.
unsigned VsMsgbusCheckFindings(const char* rule) noexcept;

}  // extern "C"
