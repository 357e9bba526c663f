/// @file
/// The version of the headers.
#pragma once

#define VSMSGBUS_VERSION_MAJOR 1  ///< changes when modules have to be changed
#define VSMSGBUS_VERSION_MINOR 0  ///< changes when something is added
#define VSMSGBUS_VERSION_PATCH 0  ///< changes when something is mended

/// All three as one number that can be compared: 10203 for 1.2.3.
#define VSMSGBUS_VERSION (VSMSGBUS_VERSION_MAJOR * 10000 + VSMSGBUS_VERSION_MINOR * 100 + VSMSGBUS_VERSION_PATCH)
