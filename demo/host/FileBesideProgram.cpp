#include "FileBesideProgram.h"

#include <windows.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "Stage.h"

namespace fs = std::filesystem;

std::string ReadFileBesideProgram(const char* name) {
    wchar_t program[MAX_PATH] = {};
    ::GetModuleFileNameW(nullptr, program, MAX_PATH);
    std::ifstream file(fs::path(program).parent_path() / name, std::ios::binary);
    Demand(file.is_open(), "a file of the demo is missing");
    return {(std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>()};
}
