#pragma once

#include "tool/ExitStatus.h"

namespace CLI {
class App;
}

namespace tool::play {

// The sub-command that this program alone uses: plays one story in this process. It reads a plan from standard
// input, a JSON object: the files "bridge", "simulator", "setup" and "modules"; "product", "load", "unload", which may
// be empty; and "steps" as Story::InOrder gives them. It tells what happens through the pipe whose number is its one
// argument, one JSON object a line, by the member "event":
//
//   "begin"        a step begins: "step", its index
//   "line"         "who" does or says "text"; "isCall" for the bridge's calls of the agent
//   "end"          the step has ended: "milliseconds"; "failure" when it failed, with "isHung" when something has not
//                  come back
//   "calls"        "functions" of the agent's that the bridge has called in the step, each once
//   "fact"         "load": the "function" by which a module is left, or "tell products": the "product", its "services"
//                  or "clear faults": a function, "unmet", that was to fail and did not
//   "no findings"  from here on the checking bridge is to find nothing
//   "crash"        an exception that is not caught: "code", "file", "offset", "thread"
//   "over"         the story is over, and the process ends
//
// The status of a process that came so far is 0.
void AddPlayer(CLI::App& program, ExitStatus& status);

}  // namespace tool::play
