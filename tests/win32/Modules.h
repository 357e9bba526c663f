// The modules of the process, as the dynamic loader knows them.
#pragma once

#include <string>

#include "win32/libraries.h"

namespace win32 {

// Each gives a reference, to be given back by Release, and fails with ERROR_MOD_NOT_FOUND. A file is a file's name or
// its whole path; null is the program's.
HMODULE ReferByFile(const char* file);
HMODULE ReferByAddress(const void* address);
// Fails with ERROR_MOD_NOT_FOUND for a file that is not there or needs one that is not, with ERROR_BAD_EXE_FORMAT for
// one that is no library, and with ERROR_PROC_NOT_FOUND for one that needs a function which nothing exports.
HMODULE Load(const std::string& path);
void Release(HMODULE library);
// Stays loaded from now on, whatever is released. Fails with ERROR_MOD_NOT_FOUND for a library that is not loaded.
void Pin(HMODULE library);

// Null when the module itself does not export the name. Fails with ERROR_MOD_NOT_FOUND for a null module.
void* ExportOf(HMODULE library, const char* name);
// Fails with ERROR_MOD_NOT_FOUND for a library that is not loaded.
std::string PathOf(HMODULE library);
std::string ProgramPath();
size_t CountModules();

}  // namespace win32
