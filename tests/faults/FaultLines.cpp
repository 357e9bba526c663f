#include "faults/FaultLines.h"

#include <regex>
#include <vector>

namespace {

constexpr const char* patterns[] = {
    // Entry and Set have false for a failure; Exit and Remove have not.
    "Entry: (true|false|false, no instance)",
    "Set: false",
    // An agent that is not started, or not registered with; it is when it is installed or upgraded next.
    "agent: [01] client started, registered:.*",
    "NOT SEEN: the (start of a client|end of the agent's libraries)",
    "agent: ny_[a-z_]+",
    // The agent's answers: memory ran out, a function is out of reach, or another failure; for the updater also that no
    // module was asked.
    "agent: answer (3|4|705|1001)",
    "agent: answer 0, result [12]",
    "agent: no answer.*",
    "agent: status of task [23]",
    // The modules' answers.
    "module: (SetProperty|EnumeratePolicies|EnumerateUserPolicies): false",
    "module: Dump: (<.*>|kind 0)",
    "module: GetDigest: <.*>",
    "module: GetDigestText: false (<.*>|kind 0)",
    "module: (GetTaskName|GetText): false kind 0",
    "module: GetBoolean: false false",
    "module: GetInteger: false (-1|0)",
    "module: (CountEntries|IterateSettings): 0",
    R"(module: GetProductInfo\(.*\), Set: false)",
    "VsKitEnforceLocalPolicy: 0",
    "(Encrypt|Decrypt|Hash): -1, size 0",
    R"(decrypted: <\.\.\.\.\.>)",
    "GetInformation: 0 kind 0",
    "GetInfoByKeyName: (-1|705) kind 0",
    "GetInfoByKeyName: 0 <>",
    "ManagedMode: 0 77",
    R"(registry: OASPolicyName=\(none\))",
    // Logs.
    R"(sink 3: NY log message, \[(dispatcher|ny_client)\] .+)",
    "sink 3: (Failed to .+|Policy collection was not completed .+|Successfully release.+|Unable to release .+)",
    "module's sink 5: Failed to .+",
    "host [38]: .+",
};

}  // namespace

bool IsLineOfFailure(const std::string& line) {
    static const std::vector<std::regex> expressions(std::begin(patterns), std::end(patterns));
    for (const std::regex& expression : expressions) {
        if (std::regex_match(line, expression)) {
            return true;
        }
    }
    return false;
}
