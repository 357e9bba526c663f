// VsMsgbus, the bridge between the modules of an endpoint security product and the management agent installed on the
// same machine: everything that a module compiles against.
//
// Conventions
//  1. Exports are plain functions; none lets an exception out. Texts are zero-terminated; wide text is UTF-16, narrow
//     text UTF-8 unless a comment says otherwise.
//  2. Null: every export accepts null pointers and answers as its comment says.
//  3. Ownership: what a module hands in stays the module's; the bridge copies texts and never frees interfaces.
//  4. Threads: every export may be called from any thread, except that Entry and Exit are made one at a time. The
//  bridge
//     calls back on the threads that the comments name, and holds no lock of its own other modules could wait for.
//  5. Interfaces: the order of the slots is the contract. What a module throws out of a callback is caught there.
//  6. An absent agent is no error: registrations wait for it, and calls that need it answer that it is not there.
#pragma once

#include "VsMsgbus/CollectProperties.h"
#include "VsMsgbus/EnforcePolicy.h"
#include "VsMsgbus/Entry.h"
#include "VsMsgbus/LogSink.h"
#include "VsMsgbus/LpcBuffer.h"
#include "VsMsgbus/ny_dl.h"
#include "VsMsgbus/ny_temp_buffer.h"
