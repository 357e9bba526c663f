#pragma once

#include <windows.h>

#include <filesystem>
#include <string>
#include <vector>

namespace tool::doctor {

// The users who may change a key or a folder. Entries of the access list that deny access are not looked at.
struct Writers {
    std::vector<std::string> names;  // the owner, who can take the right, and the users that the list allows it
    bool areAdministrators = true;   // only administrators, the system and its installer
    DWORD error = ERROR_SUCCESS;     // why nothing is known

    // As a line for people.
    std::string Text() const;
};

Writers WritersOf(HKEY key);
Writers WritersOf(const std::filesystem::path& folder);

}  // namespace tool::doctor
