// Texts of the system, as UTF-8.
#pragma once

#include <windows.h>

#include <filesystem>
#include <string>

#include "tool/text/Utf8.h"

namespace tool::doctor {

// The system's message for the error, without a full stop at the end.
std::string SystemText(DWORD error);
// A text of the system's code page, in which the bridge reads and hands on paths.
std::string Utf8OfAnsi(const std::string& text);
// The folder of this program.
std::filesystem::path OwnFolder();

}  // namespace tool::doctor
