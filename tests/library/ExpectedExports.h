#pragma once

// Every name that the libraries export, and the libraries that they may import from.

inline constexpr const char* expectedExports[] = {
    // entry and exit
    "VsMsgbusEntry",
    "VsMsgbusExit",
    "GetMsgbusClient",
    // VsKitMsgbus::lpc_buffer::Release, as the two compilers spell it
    "_ZN11VsKitMsgbus10lpc_buffer7ReleaseEv",
    "?Release@lpc_buffer@VsKitMsgbus@@QEAAXXZ",
    // property collection
    "VsKitMsgbusSetCollectProperties",
    "VsKitMsgbusRemoveCollectProperties",
    // policy enforcement
    "VsKitMsgbusSetEnforcePolicy",
    "VsKitMsgbusRemoveEnforcerPolicy",
    "VsKitEnforceLocalPolicy",
    // update notification
    "VsKitMsgbusSetUpdateNotify",
    "VsKitMsgbusRemoveUpdateNotify",
    // crypto
    "VsKitMsgbusEncryptData",
    "VsKitMsgbusDecryptData",
    "VsKitMsgbusHashBuffer",
    "VsKitMsgbusIsRunningInFIPSMode",
    "VsKitMsgbusDecodeData",
    "VsKitMsgbusEncodeData",
    "VsKitMsgbusDecodeAndDecryptData",
    "VsKitMsgbusEncryptAndEncodeData",
    // information and health checks
    "VsKitMsgbusGetInformation",
    "VsKitMsgbusGetInfoByKeyName",
    "VsKitMsgbusManagedMode",
    "VsKitHealthCheckRegisterCB",
    // scheduled tasks
    "VsKitMsgbusSetTaskEnforcer",
    "VsKitMsgbusRemoveTaskEnforcer",
    "VsKitMsgbusFreeTaskCookie",
    "UpdateMsgbusTaskStatus",
    // loader primitives
    "ny_dl_open",
    "ny_dl_sym",
    "ny_dl_close",
    "ny_dl_error",
    "ny_temp_buffer_init",
    "ny_temp_buffer_reserve",
    "ny_temp_buffer_get",
    "ny_temp_buffer_capacity",
    "ny_temp_buffer_copy",
    "ny_temp_buffer_address_of",
    "ny_temp_buffer_uninit",
};

inline constexpr const char* expectedLogExports[] = {
    "getLogManager",
    // the call operators of LogUtils::LogEvent, as the two compilers spell them
    "_ZNK8LogUtils8LogEventclEPKwS2_",
    "??RLogEvent@LogUtils@@QEBAXPEB_W0@Z",
    "_ZNK8LogUtils8LogEventclEPKwPKcz",
    "??RLogEvent@LogUtils@@QEBAXPEB_WPEBDZZ",
};

inline constexpr const char* systemLibraries[] = {"KERNEL32.DLL", "ADVAPI32.DLL", "MSVCRT.DLL"};
inline constexpr const char* hostLogLibrary = "LOGLIB.DLL";
