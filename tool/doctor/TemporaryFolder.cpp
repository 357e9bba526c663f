#include "tool/doctor/TemporaryFolder.h"

#include <windows.h>

namespace tool::doctor {

TemporaryFolder::TemporaryFolder() {
    // One of an earlier process with this id may have been left.
    unsigned number = 0;
    do {
        path = std::filesystem::temp_directory_path() /
               ("vsmsgbus-" + std::to_string(::GetCurrentProcessId()) + "-" + std::to_string(++number));
    } while (!std::filesystem::create_directory(path));
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code inUse;
    std::filesystem::remove_all(path, inUse);
}

}  // namespace tool::doctor
