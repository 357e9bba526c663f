#pragma once

#include <filesystem>

#include "tool/doctor/Check.h"

namespace tool::doctor {

// The bridge in that folder: which file it is, its version, whether it is the checking one, and its LogLib.dll. Nothing
// is loaded.
Checks CheckBridge(const std::filesystem::path& folder);

}  // namespace tool::doctor
