#pragma once

#include <windows.h>

#include <filesystem>
#include <string>

// The path of a library that depends on another one of its own folder, which nothing else would find.
inline std::string LibraryWithANeighbour() {
    char program[MAX_PATH] = {};
    ::GetModuleFileNameA(nullptr, program, MAX_PATH);
    return (std::filesystem::path(program).parent_path().parent_path() / "neighbours" / "needs_neighbour.dll").string();
}
