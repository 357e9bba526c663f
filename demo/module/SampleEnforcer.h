#pragma once

#include <condition_variable>
#include <map>
#include <mutex>
#include <string>

#include "SampleCollector.h"
#include "VsMsgbus.h"

// Enforces the agent's policies: keeps the settings that this module works with, and says what has changed.
class SampleEnforcer final : public VsKitMsgbus::INYEnforcePolicy {
public:
    explicit SampleEnforcer(const Speaker& moduleSpeaker) : speaker(moduleSpeaker) {}

    int32_t GetLogLevel() override { return 0; }
    void Reserved() override {}
    // Reads the policies through the bag, on a thread of the agent's.
    void EnforcePolicy(const wchar_t* productId, IPolicyBag* bag) override;

    // Asks the agent to send the policies again, and waits until they were enforced. False when it did not.
    bool EnforceAgain(const std::wstring& productId);

private:
    using Settings = std::map<std::wstring, std::wstring>;

    void SayChanges(const Settings& read) const;
    void SayDump(IPolicyBag& bag) const;

    const Speaker& speaker;
    Settings kept;  // "<section>/<name>" of the sections that matter here; read and written by one callback at a time
    std::mutex mutex;
    std::condition_variable enforced;
    unsigned times = 0;
};
