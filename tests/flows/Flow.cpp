#include "flows/Flow.h"

#include <algorithm>
#include <iterator>

#include "flows/FlowList.h"
#include "flows/FlowSession.h"

const std::vector<FlowKind>& AllFlows() {
    static const std::vector<FlowKind> all = [] {
        std::vector<FlowKind> kinds;
        for (const auto& room :
             {LifeFlows(), PropertyFlows(), PolicyFlows(), TaskFlows(), UpdateFlows(), ServiceFlows()}) {
            kinds.insert(kinds.end(), room.begin(), room.end());
        }
        return kinds;
    }();
    return all;
}

FlowOutcome RunFlow(FlowWorld& world, const FlowKind& kind, const FlowHook& hook) {
    FlowOutcome outcome;
    FlowSession session(world, kind);
    outcome.prepareCalls = session.PrepareCalls();
    outcome.transcript = session.Prepared();
    Append(outcome.transcript, session.Run(hook));
    outcome.calls = session.Calls();
    if (hook.again && kind.canRunAgain) {
        outcome.again = session.Run();
    }
    outcome.transcript.emplace_back("later:");
    Append(outcome.transcript, session.End());
    return outcome;
}

void Append(std::vector<std::string>& lines, const std::vector<std::string>& more) {
    lines.insert(lines.end(), more.begin(), more.end());
}

std::vector<std::string> WithoutDropped(const std::vector<std::string>& transcript) {
    std::vector<std::string> lines;
    std::copy_if(transcript.begin(), transcript.end(), std::back_inserter(lines),
                 [](const std::string& line) { return !line.starts_with("dropped: "); });
    return lines;
}

std::string Joined(const std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines) {
        text += line + "\n";
    }
    return text;
}
