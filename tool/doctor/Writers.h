#pragma once

#include <windows.h>

#include <filesystem>
#include <string>
#include <vector>

namespace tool::doctor {

// Who may change a key or a folder. Refusals in the access list are not looked at.
struct Writers {
    std::vector<std::string> names;  // the owner, who can give himself the right, and those whom the list names
    bool areAdministrators = true;   // only administrators, the system and its installer
    DWORD error = ERROR_SUCCESS;     // why nothing is known

    // As a line for people.
    std::string Text() const;
};

Writers WritersOf(HKEY key);
Writers WritersOf(const std::filesystem::path& folder);

}  // namespace tool::doctor
