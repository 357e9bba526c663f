#include "soak/FollowReport.h"

#include <functional>
#include <string_view>

#include "VsMsgbus.h"
#include "msgbus/client/NyClient.h"
#include "msgbus/client/NyClientNotifier.h"
#include "msgbus/client/VsMsgbusClientRecord.h"
#include "ny_simulator.h"

namespace {

std::vector<ny_sim_call_t> RecordedCalls() {
    std::vector<ny_sim_call_t> calls(ny_sim_call_count(nullptr));
    for (size_t i = 0; i < calls.size(); ++i) {
        ny_sim_get_call(i, &calls[i]);
    }
    return calls;
}

size_t LastStart(const std::vector<ny_sim_call_t>& calls) {
    size_t start = calls.size();
    for (size_t i = 0; i < calls.size(); ++i) {
        start = calls[i].function == std::string_view("ny_client_handler_create") ? i : start;
    }
    return start;
}

bool IsOfLifeCycle(std::string_view function) {
    return function.find("register") != function.npos || function.starts_with("ny_client_handler_");
}

// The calls from `first` on that `isMeant` chooses, as text.
std::vector<std::string> Answers(const std::vector<ny_sim_call_t>& calls, size_t first,
                                 const std::function<bool(const ny_sim_call_t&)>& isMeant) {
    std::vector<std::string> answers;
    std::string last;
    size_t times = 0;
    for (size_t i = first; i < calls.size(); ++i) {
        if (!isMeant(calls[i])) {
            continue;
        }
        const std::string answer = std::string(calls[i].function) + ": " + std::to_string(calls[i].result);
        times = answer == last ? times + 1 : 1;
        last = answer;
        if (times == 1) {
            answers.push_back(answer);
        } else {
            answers.back() = answer + ", " + std::to_string(times) + " times";
        }
    }
    return answers;
}

// The watcher may be writing it. A report that is torn then says as much as none.
__attribute__((no_sanitize("thread"))) std::string CopyVersion(const AgentVersion& version) {
    std::string copy;
    for (const volatile char& character : version) {
        if (character == '\0') {
            break;
        }
        copy += character;
    }
    return copy;
}

}  // namespace

std::string StateOfTheBridge() {
    const NyClient& client = *GetMsgbusClient()->client;
    const NyClientNotifier* const watcher = client.notifier.load();
    const std::string saw = watcher == nullptr ? "there is none" : "last saw \"" + CopyVersion(watcher->version) + "\"";
    const bool isRunning = watcher != nullptr && watcher->running.load() != 0;
    return "the watcher: " + saw + ", " + (isRunning ? "runs" : "does not run") + ", told " +
           (client.notified.load() == NyClientStateStarted ? "start" : "stop") + "; the agent's client is " +
           (client.started.load() != 0 ? "started" : "not started");
}

std::vector<std::string> AnswersInTheLastStart() {
    const auto calls = RecordedCalls();
    const size_t start = LastStart(calls);
    return Answers(calls, start, [&](const auto& call) { return call.threadId == calls[start].threadId; });
}

std::vector<std::string> RefusalsOnOtherThreads() {
    const auto calls = RecordedCalls();
    const size_t start = LastStart(calls);
    return Answers(calls, 0, [&](const auto& call) {
        const bool isOfStart = start < calls.size() && call.threadId == calls[start].threadId;
        return !isOfStart && call.result != NY_OK && IsOfLifeCycle(call.function);
    });
}

std::string Section(const std::string& title, const std::vector<std::string>& lines) {
    std::string text = title + ":\n";
    for (const std::string& line : lines) {
        text += "  " + line + "\n";
    }
    return lines.empty() ? text + "  none\n" : text;
}
