#include "tool/doctor/Problems.h"

#include <fmt/args.h>
#include <fmt/format.h>

#include <algorithm>

namespace tool::doctor {

const std::vector<ProblemText>& AllProblems() {
    static const std::vector<ProblemText> problems = {
        {Problem::BridgeMissing, "BRIDGE-MISSING", "There is no VsMsgbus.dll in {0}: nobody can load the bridge.",
         "Put bin/VsMsgbus.dll and bin/LogLib.dll of the package beside the product's programs."},
        {Problem::BridgeUnusable, "BRIDGE-UNUSABLE", "The bridge cannot be loaded: {0} {1}.",
         "Put bin/VsMsgbus.dll of the package in its place."},
        {Problem::LogLibMissing, "LOGLIB-MISSING",
         "The bridge needs LogLib.dll, and there is none in {0}: loading the bridge, or a module that needs it, fails "
         "with error 126.",
         "Put LogLib.dll beside VsMsgbus.dll: bin/LogLib.dll of the package, or the host's own."},
        {Problem::LogLibUnusable, "LOGLIB-UNUSABLE",
         "The bridge needs LogLib.dll, and {0} {1}: loading the bridge, or a module that needs it, fails.",
         "Put bin/LogLib.dll of the package in its place, or have the host's own export what the package's does."},
        {Problem::AgentAbsent, "AGENT-ABSENT",
         "No agent is installed: the key HKEY_LOCAL_MACHINE\\Software\\Corvane\\Agent is not there (error {0}).",
         "Install the agent. A process that has entered notices it within 15 seconds."},
        {Problem::AgentUnreadable, "AGENT-UNREADABLE",
         "The key HKEY_LOCAL_MACHINE\\Software\\Corvane\\Agent may not be read by this user (error {0}): the bridge "
         "takes the agent for not installed.",
         "Look with the rights of the product, and repair the rights of the key if it may not read there either."},
        {Problem::VersionAbsent, "VERSION-ABSENT",
         "The agent's key has no value MsgbusVersion (error {0}): the bridge takes the agent for not installed, and "
         "no log line says so.",
         "Let the agent's installer finish, or repair the installation: the bridge starts the agent as soon as the "
         "value is written."},
        {Problem::VersionEmpty, "VERSION-EMPTY",
         "The value MsgbusVersion of the agent's key is empty: the bridge takes the agent for not installed.",
         "Repair the agent's installation: the value is a text like \"5.7.0\" (REG_SZ)."},
        {Problem::VersionTooLong, "VERSION-TOO-LONG",
         "The value MsgbusVersion of the agent's key has {0} bytes, and the bridge reads no more than {1}: it takes "
         "the "
         "agent for not installed.",
         "Repair the agent's installation: the value is a text like \"5.7.0\" (REG_SZ)."},
        {Problem::PathAbsent, "PATH-ABSENT",
         "The registry does not say where the agent's libraries are: there is no value RuntimeSdkPath64 in {0}, in the "
         "32-bit view. The bridge then looks for them by their bare names, as a rule in vain: its log says \"library "
         "failed <126>\".",
         "Repair the agent's installation, then have its version change or the product leave and enter again: the "
         "bridge does not look again by itself."},
        {Problem::PathTooLong, "PATH-TOO-LONG",
         "The value RuntimeSdkPath64 has {0} bytes, and the bridge reads no more than 512: it finds no library.",
         "Install the agent into a folder with a shorter path."},
        {Problem::PathEmpty, "PATH-EMPTY",
         "The value RuntimeSdkPath64 is empty: the bridge looks for the agent's libraries in the root of the current "
         "drive.",
         "Repair the agent's installation, then have its version change or the product leave and enter again."},
        {Problem::PathNotAbsolute, "PATH-NOT-ABSOLUTE",
         "The runtime path \"{0}\" is no whole path: where the agent's libraries are looked for depends on the "
         "process's current folder, and whoever can write there can have code run.",
         "Have the agent's installer write a whole path, beginning with a drive, into RuntimeSdkPath64."},
        {Problem::PathWrong, "PATH-WRONG",
         "The runtime path is wrong: {0} is no folder (error {1}). The bridge's log says \"library failed <126>\", as "
         "it does for a missing library.",
         "Correct RuntimeSdkPath64 or repair the agent's installation, then have its version change or the product "
         "leave and enter again: the bridge does not try again by itself."},
        {Problem::LibraryMissing, "LIBRARY-MISSING",
         "The agent's library {0} is missing, and its folder is there (error {1}). Without it there is no {2}.",
         "Repair the agent's installation."},
        {Problem::LibraryIsNone, "LIBRARY-IS-NONE",
         "The agent's library {0} is no library of Windows: {1} (error 193).",
         "Repair the agent's installation: the file was overwritten or damaged."},
        {Problem::LibraryOfOtherMachine, "LIBRARY-OF-OTHER-MACHINE",
         "The agent's library {0} is made for another machine type, {1}, and the bridge is of 64 bits for x86-64 "
         "(error 193).",
         "Install the agent's libraries of 64 bits, and have RuntimeSdkPath64 name their folder."},
        {Problem::LibraryIncomplete, "LIBRARY-INCOMPLETE",
         "The agent's library {0} is cut off: it has {1} bytes, and its headers speak of {2}.",
         "Repair the agent's installation, and look whether the disk is full."},
        {Problem::LibraryNeedsOther, "LIBRARY-NEEDS-OTHER",
         "The agent's library {0} needs {1}, which {2}: it cannot be loaded, and the bridge's log says "
         "\"library failed <126>\" as if it were missing itself.",
         "Repair the agent's installation, or install what {1} belongs to."},
        {Problem::LibraryWithoutExports, "LIBRARY-WITHOUT-EXPORTS",
         "The agent's library {0} can be loaded, and exports none of the {1} functions that the bridge looks for (code "
         "705). Without them there is no {2}.",
         "Install an agent of the version that the bridge was made for: this file has another library's name."},
        {Problem::LibraryLacksExports, "LIBRARY-LACKS-EXPORTS",
         "The agent's library {0} does not export {1} (code 705): {2}.",
         "Install an agent of the version that the bridge was made for."},
        {Problem::LibraryNotLoaded, "LIBRARY-NOT-LOADED",
         "The agent's library {0} cannot be loaded: error {1}, {2}. Its file looks right.",
         "Look at what it does when it is loaded, and whether a protection program refuses it."},
        {Problem::AgentCrashes, "AGENT-CRASHES",
         "The agent crashes: its code ended the process with {1} in {0}. A product would end there, too.",
         "Repair or update the agent; its maker needs this code and the file {2}."},
        {Problem::AgentHangs, "AGENT-HANGS",
         "The agent hangs: {0} has not returned after {1} seconds. A product's VsMsgbusEntry would hang there, too.",
         "Look whether the agent's service runs; --wait gives it more time."},
        {Problem::TrialFailed, "TRIAL-FAILED", "The agent could not be tried: {0}.",
         "Look whether programs may be started here, and whether a protection program refuses it."},
        {Problem::ClientRefused, "CLIENT-REFUSED",
         "The agent refuses the bridge: {0} answers {1}. The libraries are loaded; the bridge's log says \"falied to "
         "start ny client.\" and no code.",
         "Ask the agent's documentation for the code, and look whether its service runs."},
        {Problem::ProductRefused, "PRODUCT-REFUSED",
         "The agent refuses the product \"{0}\" for {1}: {2} answers {3}. VsMsgbusEntry answers false, no line says "
         "why, and the services and products after it are not registered either.",
         "Have the agent accept the product: ask its documentation for the code. Another product's refusal comes first "
         "when its id does."},
        {Problem::ProductKept, "PRODUCT-KEPT",
         "The agent does not let the product \"{0}\" go for {1}: {2} answers {3}.",
         "Ask the agent's documentation for the code."},
        {Problem::ModuleMissing, "MODULE-MISSING", "The module {0} cannot be read: there is no such file.",
         "Name the module's file after --module."},
        {Problem::ModuleIsNone, "MODULE-IS-NONE", "The module {0} is no library of Windows: {1}.",
         "Build the module anew, or copy it anew."},
        {Problem::ModuleOfOtherMachine, "MODULE-OF-OTHER-MACHINE",
         "The module {0} is made for another machine type, {1}: a process with the bridge, of 64 bits for x86-64, "
         "cannot load it (error 193).",
         "Build the module for x86-64."},
        {Problem::ModuleIncomplete, "MODULE-INCOMPLETE",
         "The module {0} is cut off: it has {1} bytes, and its headers speak of {2}.",
         "Build the module anew, or copy it anew."},
        {Problem::ModuleNeedsOther, "MODULE-NEEDS-OTHER", "The module {0} needs {1}, which {2}: it cannot be loaded.",
         "Put {1} beside the module, or link it statically. If it stands with the host: have the host's folder in PATH "
         "when "
         "you run this."},
        {Problem::ModuleOfOtherBridge, "MODULE-OF-OTHER-BRIDGE",
         "The module {0} imports {1} from VsMsgbus.dll, and {2} does not export it: the module cannot be loaded.",
         "Build the module with the headers and the import library of this bridge's package, or install the newer "
         "bridge."},
        {Problem::CheckingBridgeMissing, "CHECKING-BRIDGE-MISSING",
         "The module cannot be tried: there is no checking bridge, {0}.",
         "Run vsmsgbus.exe where it stands in the package, with the folder checking/ beside its own."},
        {Problem::ModuleNotLoaded, "MODULE-NOT-LOADED",
         "The module {0} cannot be loaded: error {1}, {2}. Its file looks right.",
         "Look at what its DllMain does: one that answers FALSE is error 1114."},
        {Problem::ModuleCrashes, "MODULE-CRASHES", "The module crashes: the process ended with {1} in {0}.",
         "Run a host with the module in a debugger."},
        {Problem::ModuleHangs, "MODULE-HANGS", "The module hangs: {0} has not returned after {1} seconds.",
         "Break into a host with the module in a debugger; --wait gives it more time."},
        {Problem::ModuleWithoutFunction, "MODULE-WITHOUT-FUNCTION",
         "The module {0} does not export {1}, which is to be called.",
         "Name a function without arguments that the module exports."},
        {Problem::ModuleAnswersFalse, "MODULE-ANSWERS-FALSE", "The module's {0} answers false, and {1}.",
         "Look at what {0} does before it calls VsMsgbusEntry, and at the checks below."},
        {Problem::ModuleDoesNotEnter, "MODULE-DOES-NOT-ENTER",
         "The module has not called VsMsgbusEntry after {0} seconds: no agent can know of it. {1}",
         "Name the function that your host calls to load the module: --enter FUNCTION; --wait gives it more time."},
        {Problem::ModuleOfOtherSpelling, "PRODUCT-SPELT-OTHERWISE",
         "The module enters as \"{0}\", and is looked for as \"{1}\", which differs in the case of letters or in "
         "blanks "
         "alone: ids are compared exactly, so who asks for \"{1}\" asks another product.",
         "Have module and host, or module and agent, use one spelling of the id."},
        {Problem::ModuleOfOtherId, "PRODUCT-NOT-ENTERED",
         "The module enters as {0}, and not as \"{1}\", under which it is looked for.",
         "Have the module enter with the id that the agent's administrators know, or look for the other one."},
        {Problem::ModuleFinding, "{0}", "{1}", "{2}"},
        {Problem::ModuleMistake, "{0}", "{1}", "{2}"},
    };
    return problems;
}

const ProblemText& TextOf(Problem problem) {
    const auto& all = AllProblems();
    return *std::find_if(all.begin(), all.end(), [&](const ProblemText& text) { return text.problem == problem; });
}

std::string Filled(std::string_view text, const std::vector<std::string>& places) {
    fmt::dynamic_format_arg_store<fmt::format_context> arguments;
    for (const std::string& place : places) {
        arguments.push_back(place);
    }
    return fmt::vformat(text, arguments);
}

}  // namespace tool::doctor
