#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "VsMsgbus/LogSink.h"
#include "flows/DroppedLines.h"
#include "loglib/LogLib.h"
#include "support/AgentEnvironment.h"
#include "support/HeldLocks.h"

// A module's log sink that writes into a transcript.
class FlowSink final : public VsKitMsgbus::ILogSink {
public:
    FlowSink(LineLog& transcript, std::string sinkName) : lines(transcript), name(std::move(sinkName)) {}
    void Write(int level, const wchar_t* text) override {
        ExpectNoLockHeld("Write");
        lines.Add(name + " " + std::to_string(level) + ": " + Narrow(text));
    }

private:
    LineLog& lines;
    const std::string name;
};

// The machine that flows run on, for as many of them as one likes, and the transcript of what happens: with a full
// agent and a second one to upgrade to, and with the registry key for the names of policies. One at a time in a
// process, flows one after the other. The transcript may be added to on any thread.
class FlowWorld {
public:
    static constexpr char product[] = "PRODUCT1000";
    static constexpr wchar_t wideProduct[] = L"PRODUCT1000";

    FlowWorld();
    ~FlowWorld();
    FlowWorld(const FlowWorld&) = delete;
    FlowWorld& operator=(const FlowWorld&) = delete;

    void Note(std::string line) { transcript.Add(std::move(line)); }
    std::vector<std::string> TakeTranscript() { return transcript.Take(); }

    // The log of the process's first product and that of the single registration.
    VsKitMsgbus::ILogSink& BridgeSink() { return bridgeSink; }
    VsKitMsgbus::ILogSink& ModuleSink() { return moduleSink; }

    // The registry then names the first agent, the second one, or none; a watcher of the registry sees that.
    void PutFirstAgent();
    void PutSecondAgent();
    void TakeAgentAway();
    // Where the two agents' libraries stand.
    const std::filesystem::path& FirstFolder() const { return firstFolder; }
    const std::filesystem::path& SecondFolder() const { return secondFolder; }

    // Wait until the watcher's thread is starting a client, or has said that it cannot; and until no library of the
    // agent is loaded. The registry is touched now and then for a watcher that was not yet watching. What is not seen
    // in time is noted.
    void WaitForStart();
    void WaitForNoAgent();
    // Notes what is registered with the agent, and whether a client is started.
    void NoteRegistrations();
    // Notes the agent's functions that were called since Prepare, in order.
    void NoteCalls();
    // A text about everything that is registered, started, lent or loaded; empty when nothing is.
    static std::string LeftWithTheAgent();

    // How long is waited for the watcher. Shorter where a fault may keep it from what is waited for.
    std::chrono::milliseconds patience = soon;
    // An accessor that the agent's task objects lack, such as "get_id"; empty for none. For the next Prepare.
    std::string lackingAccessor;

private:
    class HostListener final : public LogUtils::LogListener {
    public:
        explicit HostListener(LineLog& transcript) : lines(transcript) {}
        void OnLogEvent(const LogUtils::LogRecord& event) override {
            lines.Add("host " + std::to_string(event.severity) + ": " + Narrow(event.text));
        }

    private:
        LineLog& lines;
    };

    void WaitFor(const std::function<bool()>& happened, const char* what);

    LineLog transcript;
    FlowSink bridgeSink{transcript, "sink"};
    FlowSink moduleSink{transcript, "module's sink"};
    HostListener hostListener{transcript};
    DroppedLines dropped{[this](const std::string& text) { Note("dropped: " + text); }};
    AgentEnvironment environment;
    std::filesystem::path firstFolder;
    std::filesystem::path secondFolder;
};
