#include "tool/play/Verbs.h"

#include <algorithm>

namespace tool::play {

namespace {

using enum MemberType;

Member Required(const char* name, MemberType type, const char* meaning, std::vector<const char*> choices = {}) {
    return {name, type, true, meaning, std::move(choices)};
}

Member Optional(const char* name, MemberType type, const char* meaning, std::vector<const char*> choices = {}) {
    return {name, type, false, meaning, std::move(choices)};
}

const std::vector<const char*>& Services() {
    static const std::vector<const char*> services{"properties", "policies", "tasks", "updates"};
    return services;
}

Member Product() {
    return Optional("product", Text, "the product's id; the story's product when left out");
}
Member ModuleName() {
    return Optional("module", Text, "the file name of one of the modules; all of them when left out");
}
Member Later() {
    return Optional("as", Text, "a name for the request: the story goes on at once, and \"await\" waits for it");
}
Member AgentAnswer() {
    return Optional("answer", Answer, "what the bridge is to answer the agent; 0 when left out, null for anything");
}
Member Function() {
    return Required("function", Text, "the agent's function, as in ny_property_bag_add_property");
}
Member Task() {
    return Required("task", Text, "the task's id");
}
Member End() {
    return Optional("end", Choice, "how the task is to end; done when left out", {"done", "failed", "any"});
}
Member Version(bool isRequired) {
    return {"version", Text, isRequired, "the agent's version", {}};
}
Member Build() {
    return Optional("build", Choice, "which of the simulated agent's builds; full when left out",
                    {"full", "older", "lacking", "empty", "text"});
}

std::vector<Verb> MakeVerbs() {
    return {
        // --- The agent comes and goes
        {"install", "The agent is installed.", {Version(false), Build()}},
        {"upgrade", "The agent is upgraded to another version.", {Version(true), Build()}},
        {"remove", "The agent is removed.", {}},
        {"make agent key",
         "The agent's registry key is there, without an agent: one that is installed then is noticed at once, and not "
         "at "
         "the bridge's next look, up to 15 seconds later.",
         {}},
        // --- The module comes and goes
        {"load",
         "Loads the module's file, and calls its function that enters the bridge.",
         {ModuleName(),
          Optional("function", Text,
                   "the exported function; when left out the one whose name ends with Load, and when "
                   "empty none"),
          Optional("answer", Truth, "what it is to answer; true when left out, null for anything")}},
        {"unload",
         "Calls the module's function that leaves the bridge, and unloads the module's file.",
         {ModuleName(),
          Optional("function", Text,
                   "the exported function; when left out the one whose name ends with Unload, and when "
                   "empty none"),
          Optional("answer", Truth, "what it is to answer; true when left out, null for anything"),
          Optional("keep", Flag, "whether the file stays loaded; false when left out")}},
        {"call",
         "Calls an exported function of the module's.",
         {Required("function", Text, "the exported function"), ModuleName(),
          Optional("answer", Truth, "what it is to answer; true when left out, null for anything"), Later()}},
        {"cycle",
         "Has the modules enter and leave many times, with their files loaded, and compares what the process has "
         "afterwards "
         "with what it had.",
         {Required("times", Count, "how often; a tenth of that comes before what is measured"),
          Optional("bytes", Count, "by how much its heaps may have grown; 16384 when left out"),
          Optional("handles", Count, "by how many; 16 when left out"),
          Optional("threads", Count, "by how many; 4 when left out")}},
        // --- The agent asks
        {"ask",
         "The agent asks for the product's properties.",
         {Product(), AgentAnswer(), Optional("properties", Properties, "properties that are to be among those given"),
          Optional("count", Answer, "how many are to be given; one at least when left out, null for any number"),
          Later()}},
        {"notify", "The agent notifies the product of its policies.", {Product(), AgentAnswer(), Later()}},
        {"run task", "The agent has a task executed, and waits until it has ended.", {Task(), AgentAnswer(), End()}},
        {"start task", "The agent has a task executed; it may go on afterwards.", {Task(), AgentAnswer(), Later()}},
        {"stop task", "The agent has a task stopped.", {Task(), AgentAnswer(), Later()}},
        {"remove task", "The agent has a task removed.", {Task(), AgentAnswer(), Later()}},
        {"ask task", "The agent asks how a task stands.", {Task(), AgentAnswer(), Later()}},
        {"wait for task", "Waits until a task has ended.", {Task(), End()}},
        {"update",
         "The agent tells the product of an update.",
         {Product(), Optional("second", Text, "the agent's second text; empty when left out"),
          Optional("third", Text, "the agent's third text; empty when left out"),
          Optional("fourth", Text, "the agent's fourth text; empty when left out"),
          Optional("number", Count, "the agent's number; 0 when left out"), AgentAnswer(),
          Optional("result", Answer, "the product's result; 0 when left out, null for anything"), Later()}},
        {"get value",
         "The agent asks the product for a value by its name.",
         {Product(), Required("name", Text, "the value's name"),
          Optional("second", Text, "the agent's second text; empty when left out"), AgentAnswer(),
          Optional("result", Answer, "the product's result; 0 when left out, null for anything"),
          Optional("value", Pattern, "the value that is to be given"), Later()}},
        {"set value",
         "The agent sets a value of the product's by its name.",
         {Product(), Required("name", Text, "the value's name"), Required("value", Text, "the value"),
          Optional("second", Text, "the agent's second text; empty when left out"), AgentAnswer(),
          Optional("result", Answer, "the product's result; 0 when left out, null for anything"), Later()}},
        {"log",
         "The agent writes a log line.",
         {Required("message", Text, "the line"), Optional("severity", Count, "the agent's severity; 3 when left out"),
          Optional("from", Text, "the part of the agent that writes; agent when left out")}},
        {"await",
         "Waits for a request that was made with \"as\", and looks at what was expected of it.",
         {Required("request", Text, "its name")}},
        // --- What the agent holds
        {"set policies",
         "Puts policies in the place of all that the agent has.",
         {Required("policies", Policies, "a list, or the name of a file with one")}},
        {"set tasks",
         "Puts tasks in the place of all that the agent has.",
         {Required("tasks", Tasks, "a list, or the name of a file with one")}},
        {"set information",
         "Puts values in the place of all that the agent tells of itself.",
         {Required("values", Information, "the values by their keys")}},
        // --- The agent's calls fail, wait or are slow
        {"fail",
         "Has a call of an agent's function answer a code without doing anything.",
         {Function(), Optional("nth", Count, "which call, counted from now; 1, the next one, when left out"),
          Optional("code", Code, "the code; 3 when left out"),
          Optional("always", Flag, "whether all later calls fail as well; false when left out")}},
        {"fail memory",
         "Has an allocation of the bridge's fail.",
         {Optional("nth", Count, "which one, counted from now; 1, the next one, when left out"),
          Optional("always", Flag, "whether all later ones fail as well; false when left out")}},
        {"clear faults", "Ends all that \"fail\" and \"fail memory\" have begun.", {}},
        {"block", "Has every call of an agent's function wait until \"unblock\".", {Function()}},
        {"unblock", "Lets those go on that wait in the function.", {Function()}},
        {"slow",
         "Has every call of an agent's function take longer.",
         {Function(), Required("milliseconds", Count, "how much longer; 0 ends it")}},
        // --- Waiting
        {"wait until registered",
         "Waits until the agent can call the product for a service.",
         {Product(), Required("service", Choice, "the service", Services())}},
        {"wait until unregistered",
         "Waits until the agent can no longer call the product for a service.",
         {Product(), Required("service", Choice, "the service", Services())}},
        {"wait until called",
         "Waits until the bridge has called an agent's function.",
         {Function(),
          Optional("count", Count, "how often since the story began or \"forget calls\"; 1 when left out")}},
        {"wait until blocked", "Waits until a thread is in a function that was blocked.", {Function()}},
        {"wait until reported",
         "Waits until the product has reported about a task.",
         {Task(), Optional("status", Code, "which status; any when left out")}},
        {"tell products", "Waits until the bridge has registered products, and tells which and for what.", {}},
        {"pause", "Lets time pass.", {Required("milliseconds", Count, "how much")}},
        {"forget calls", "Counts the bridge's calls of the agent anew.", {}},
        // --- Expectations
        {"expect registered",
         "The product is registered for these services, and for no others.",
         {Product(), Required("services", Choices, "the services", Services())}},
        {"expect calls",
         "The bridge has called an agent's function so often.",
         {Function(), Required("count", Count, "how often since the story began or \"forget calls\"")}},
        {"expect reports",
         "The product has reported these statuses of a task, in this order.",
         {Task(), Required("statuses", Codes, "the statuses")}},
        {"expect said",
         "The module has said a line to the function that \"load\" gives it.",
         {Required("text", Pattern, "the whole line")}},
        {"expect not loaded",
         "A library is not in the process.",
         {Required("library", Text, "its file name, as in ny_client.dll")}},
        {"make registry key",
         "Makes a key of the machine's registry.",
         {Required("key", Text, "below HKEY_LOCAL_MACHINE")}},
        {"expect registry",
         "A value of the machine's registry has a text.",
         {Required("key", Text, "below HKEY_LOCAL_MACHINE"), Required("name", Text, "the value's name"),
          Required("text", Pattern, "the text")}},
        {"expect nothing left", "Nothing of the agent's is registered, started or alive, and it was not misused.", {}},
        {"expect no findings",
         "The checking bridge has found nothing, and finds nothing until the process has ended.",
         {}},
        {"expect finding",
         "The checking bridge has found a mistake.",
         {Required("rule", Text, "the rule, as in SET-TWICE")}},
        // --- Several steps
        {"in any order",
         "The steps are played in an order that the seed decides; without --seed as they stand.",
         {Required("steps", Steps, "the steps")}},
        {"repeat",
         "The steps are played several times.",
         {Required("times", Count, "how often"), Required("steps", Steps, "the steps")}},
    };
}

}  // namespace

const std::vector<Member>& StoryMembers() {
    static const std::vector<Member> members{
        Optional("$schema", Text, "where editors find the schema of this file"),
        Optional("name", Text, "what the story is about; the file's name when left out"),
        Optional("product", Text,
                 "the product of the steps that name none; the only one that is registered when left "
                 "out"),
        Optional("load", Text, "the exported function of \"load\" steps that name none"),
        Optional("unload", Text, "the exported function of \"unload\" steps that name none"),
        Optional("within", Count, "the limit of steps that have none, in milliseconds; 20000 when left out"),
        Required("steps", Steps, "what happens, one after the other"),
    };
    return members;
}

const std::vector<Member>& CommonMembers() {
    static const std::vector<Member> members{
        Required("do", Text, "what happens"),
        Optional("note", Text, "what it is for; printed with the step"),
        Optional("within", Count, "how long it may take, in milliseconds"),
        Optional("atLeast", Count, "how long it must take, in milliseconds"),
    };
    return members;
}

const std::vector<Verb>& AllVerbs() {
    static const std::vector<Verb> verbs = MakeVerbs();
    return verbs;
}

const Verb* FindVerb(std::string_view name) {
    const auto& verbs = AllVerbs();
    const auto found = std::find_if(verbs.begin(), verbs.end(), [&](const Verb& verb) { return verb.name == name; });
    return found != verbs.end() ? &*found : nullptr;
}

const Member* FindMember(const std::vector<Member>& members, std::string_view name) {
    const auto found =
        std::find_if(members.begin(), members.end(), [&](const Member& member) { return member.name == name; });
    return found != members.end() ? &*found : nullptr;
}

}  // namespace tool::play
