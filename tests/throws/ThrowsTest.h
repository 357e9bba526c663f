#pragma once

#include <string>
#include <vector>

#include "support/AgentTasks.h"
#include "support/AgentUpdate.h"
#include "support/BridgeTest.h"
#include "support/PolicyNotice.h"
#include "support/Text.h"
#include "throws/LoadedThrowingModule.h"

// The modules, by the compilers that they are compiled with.
inline const std::vector<std::string> throwingModules = {
    "throwing_module.dll",
#ifdef _WIN32
    "throwing_microsoft_module.dll",
#endif
};

// "Itanium" or "Microsoft": the C++ ABI of the module's compiler.
inline std::string AbiOf(const std::string& file) {
    return file == throwingModules.front() ? "Itanium" : "Microsoft";
}

// The agent is there, and the module has entered for all services and offers everything.
class ThrowsTest : public AgentTest {
protected:
    explicit ThrowsTest(const std::string& file);
    void TearDown() override;

    // Has the bridge call the module in that place: the agent's question and what it was answered, what was written,
    // and what the module told.
    std::vector<std::string> Ask(Place place);

    static constexpr const char* id = "THROWING1000";
    LoadedThrowingModule module;

private:
    std::string AskOnce(Place place) const;

    const std::wstring wideId = Wide(id);
    VsMsgbus* instance = nullptr;
};
