#pragma once

#include <string>

#include "tool/doctor/Check.h"
#include "tool/pe/PeFile.h"

namespace tool::doctor {

// The texts and problems for a file of the bridge's, the agent's or the module's.
struct LibraryFileTexts {
    std::string group;
    std::string prefix;  // of the names of its checks
    std::string use;     // the part of the bridge that does not work without the file
    Problem missing;
    Problem isNone;
    Problem ofOtherMachine;
    Problem incomplete;
};

// The names of a file's checks, in their order.
inline constexpr const char* libraryFileSteps[] = {"there", "machine type", "complete"};

// Adds these checks of a file up to the first bad one. True when the system can load the file, given the libraries that
// it needs.
bool CheckLibraryFile(const PeFile& image, const std::string& path, const LibraryFileTexts& texts, Checks& checks);

}  // namespace tool::doctor
