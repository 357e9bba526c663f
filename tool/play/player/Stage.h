#pragma once

#include <chrono>
#include <map>
#include <memory>
#include <mutex>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "tool/play/player/Channel.h"
#include "tool/play/player/Hold.h"
#include "tool/play/player/ModuleFile.h"
#include "tool/play/player/Request.h"
#include "vsmsgbus_testing.hpp"

namespace tool::play {

// The stage of a story: the machine with the simulated agent, the modules, and the requests under way. Used on the
// thread of the story; a function for any thread says so.
class Stage {
public:
    // `plan` is what Player.h describes.
    Stage(const nlohmann::json& plan, void* bridgeHandle, Channel& channel);

    // The handle of the bridge's library.
    void* Bridge() const noexcept { return bridge; }
    vsmsgbus::testing::Machine& Machine() noexcept { return machine; }
    Holds& AllHolds() noexcept { return holds; }
    // The modules that the step means, in the order of the command line.
    std::vector<ModuleFile*> ModulesOf(const nlohmann::json& step);
    // The step's, else the story's, else the one that is registered, which is then the story's. Throws Failure.
    std::string ProductOf(const nlohmann::json& step);
    // The function that the story names for "load" or "unload"; may be empty.
    std::string FunctionFor(const std::string& verb) const;
    // How many findings the checking bridge has; of one rule, or of all for null. Throws Failure with the shipped one.
    unsigned CountFindings(const char* rule) const;

    // Tells a line. Any thread.
    void Tell(std::string_view who, std::string_view text) { channel.Tell(who, text); }
    void Send(const nlohmann::json& event) { channel.Send(event); }
    // Tells which functions of the agent's were called since the last time.
    void TellCalls();
    // Tells the calls, and counts anew.
    void ForgetCalls();
    // Counts the calls anew without telling of them.
    void ForgetCallsSilently();
    // Any thread: a line of the module's, or of the bridge by way of it.
    void Hear(const char* actor, const char* line);
    std::vector<std::string> LinesSaid() const;
    static void SayTo(const char* actor, const char* line, void* stage);

    // Waits for the request and checks its answer. Keeps it for Await instead when the step gives it a name.
    void Finish(const nlohmann::json& step, std::unique_ptr<Request> request);
    void Await(const std::string& name, std::chrono::milliseconds limit);

    // For each function that is to fail, how often it had failed before.
    std::map<std::string, size_t>& FaultsBefore() noexcept { return faultsBefore; }
    // For each task, the number of reports when it was started last.
    std::map<std::string, size_t>& ReportsBefore() noexcept { return reportsBefore; }

private:
    struct Kept {
        nlohmann::json step;
        std::unique_ptr<Request> request;
    };

    void FinishNow(const nlohmann::json& step, std::unique_ptr<Request> request, std::chrono::milliseconds limit);

    Channel& channel;
    void* const bridge;
    vsmsgbus::testing::Machine machine;
    std::vector<ModuleFile> modules;
    std::string product;
    std::string load;
    std::string unload;
    Holds holds;
    size_t callsTold = 0;
    std::map<std::string, Kept> kept;
    std::map<std::string, size_t> reportsBefore;
    std::map<std::string, size_t> faultsBefore;
    mutable std::mutex mutex;
    std::vector<std::string> linesSaid;
};

// How long the step may take.
std::chrono::milliseconds LimitOf(const nlohmann::json& step);
// Throws Failure when the text is not what the pattern wants: "<what> was to be ..., and is ...".
void DemandText(const std::string& what, const nlohmann::json& pattern, const std::string& text);
// Whether the text is what the pattern wants.
bool Fits(const nlohmann::json& pattern, const std::string& text);
// The pattern for people: "\"a\"" or "like \"a.*\"".
std::string Shown(const nlohmann::json& pattern);
// Throws Failure when the number is another one than the step's member wants: `otherwise` when it has none.
void DemandNumber(const std::string& what, const nlohmann::json& step, const char* member, int64_t otherwise,
                  int64_t number);

// Tells what the bridge answered the agent, on which thread, and demands the step's "answer": NY_OK without one.
void DemandAgentAnswer(Stage& stage, const nlohmann::json& step, uint32_t thread, int32_t answer);

}  // namespace tool::play
