#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "tool/doctor/Check.h"

namespace tool::doctor {

struct ModuleFileResult {
    Checks checks;
    bool isUsable = false;  // it can be loaded as far as its file says
    std::vector<std::string> exports;

    // The only export with such an end, "Load" or "Unload": by their names, what a host calls to have the module enter
    // and leave. Empty when there is none or more than one.
    std::string OnlyExportWithEnd(std::string_view end) const;
};

// The module's file, and what it needs, above all of the bridge in that folder. Nothing is loaded.
ModuleFileResult CheckModuleFile(const std::filesystem::path& module, const std::filesystem::path& bridgeFolder);

}  // namespace tool::doctor
