#pragma once

#include <string>

#include "tool/doctor/Check.h"
#include "tool/pe/PeFile.h"

namespace tool::doctor {

// Whose file it is that is looked at.
struct LibraryFileTexts {
    std::string group;
    std::string prefix;  // of the names of its checks
    std::string use;     // what there is not without it
    Problem missing;
    Problem isNone;
    Problem ofOtherMachine;
    Problem incomplete;
};

// The names of its checks, in their order.
inline constexpr const char* libraryFileSteps[] = {"there", "machine type", "complete"};

// Adds these checks of a file up to the first bad one. Whether the system can load it if what it needs is there.
bool CheckLibraryFile(const PeFile& image, const std::string& path, const LibraryFileTexts& texts, Checks& checks);

}  // namespace tool::doctor
