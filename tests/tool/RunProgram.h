#pragma once

#include <string>
#include <vector>

// How a program ended, and what it printed.
struct ProgramRun {
    int status = -1;     // its exit status; -1 when it could not be started or was ended for taking too long
    std::string output;  // UTF-8
    std::string errors;  // UTF-8
};

// Runs vsmsgbus.exe, which stands beside this program, with the words as its command line and this process's
// environment, and waits until it has ended: two minutes at most, then it is ended. Its standard output and error are
// pipes; this program prints the errors again, for whoever reads why a test failed.
ProgramRun RunVsMsgbus(const std::vector<std::string>& words);
