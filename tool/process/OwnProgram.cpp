#include "tool/process/OwnProgram.h"

#include <windows.h>

#include <string>

namespace tool {

std::filesystem::path OwnProgram() {
    std::wstring program(MAX_PATH, L'\0');
    DWORD length = ::GetModuleFileNameW(nullptr, program.data(), static_cast<DWORD>(program.size()));
    while (length == program.size()) {
        program.resize(2 * program.size());
        length = ::GetModuleFileNameW(nullptr, program.data(), static_cast<DWORD>(program.size()));
    }
    program.resize(length);
    return program;
}

}  // namespace tool
