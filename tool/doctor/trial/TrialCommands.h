#pragma once

namespace CLI {
class App;
}

namespace tool::doctor {

// Adds the sub-commands that the doctor runs in processes of their own: "doctor-agent" and "doctor-module". They are
// not shown in the help, and are of no use without the doctor.
void AddTrialCommands(CLI::App& program);

}  // namespace tool::doctor
