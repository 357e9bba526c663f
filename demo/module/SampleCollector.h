#pragma once

#include <cstdint>
#include <string>

#include "SampleModule.h"
#include "VsMsgbus.h"

// Says what happens, through the function that the module was given.
struct Speaker {
    SampleModuleSay say = nullptr;
    void* userData = nullptr;

    void Say(const char* actor, const std::string& line) const { say(actor, line.c_str(), userData); }
};

// Answers the agent's property requests with what is true of this machine at that moment.
class SampleCollector final : public VsKitMsgbus::INYCollectProperties {
public:
    explicit SampleCollector(const Speaker& moduleSpeaker) : speaker(moduleSpeaker) {}

    void CollectProperties(bool full, ISet* set) override;
    int32_t GetLogLevel() override { return 0; }

private:
    const Speaker& speaker;
};
