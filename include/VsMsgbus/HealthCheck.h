/// @file
/// Health checks: modules leave callbacks by name.
#pragma once

extern "C" {

/// What a module hands over to be asked for its health. Nothing calls it yet: when and with what is not settled.
typedef void (*VsKitHealthCheckCallback)();

/// Keeps the callback under that name for the life of the process; a second one of the same name takes its place. Any
/// thread. No bit of the mask of VsMsgbusEntry is needed.
///
/// @param name      zero-terminated UTF-16. The low 8 bits of each unit are what counts: U+0141 and U+0041 are one
///                  name.
/// @param callback  stored as it is.
///
/// Does nothing, and says nothing, when name or callback is null, before the first VsMsgbusEntry of the process, or
/// when memory ran out. After the last VsMsgbusExit callbacks are still kept.
void VsKitHealthCheckRegisterCB(const wchar_t* name, VsKitHealthCheckCallback callback) noexcept;

}  // extern "C"
