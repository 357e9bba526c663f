#pragma once

#include <string>
#include <vector>

// A fact about this machine, as a property. Sections of properties are called paths. All texts are UTF-8.
struct MachineFact {
    const char* path;
    const char* name;
    std::string value;
};

// Operating system, host name, processors, memory, disk and uptime, as the operating system tells them now. What it
// does not tell is left out.
std::vector<MachineFact> ReadMachineFacts();
