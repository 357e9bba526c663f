#pragma once

namespace tool {

// How the program ends.
enum class ExitStatus : int {
    Right = 0,     // done, and nothing was found
    Finding = 1,   // something is wrong with what was looked at
    WrongUse = 2,  // the command line or a file that was named is not understood
};

}  // namespace tool
