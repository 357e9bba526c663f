#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "tool/doctor/Check.h"

namespace tool::doctor {

struct ModuleFileResult {
    Checks checks;
    bool isUsable = false;  // no check of the file is bad
    std::vector<std::string> exports;

    // The export whose name ends in `ending`: a host calls the one in "Load" to have the module enter, the one in
    // "Unload" to have it leave. Empty when there is none or more than one.
    std::string OnlyExportEndingIn(std::string_view ending) const;
};

// The module's file, and what it needs, above all of the bridge in that folder. Nothing is loaded.
ModuleFileResult CheckModuleFile(const std::filesystem::path& module, const std::filesystem::path& bridgeFolder);

}  // namespace tool::doctor
