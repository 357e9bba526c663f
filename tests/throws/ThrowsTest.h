#pragma once

#include <string>
#include <vector>

#include "support/AgentEnvironment.h"
#include "support/AgentRequest.h"
#include "support/AgentTasks.h"
#include "support/AgentUpdate.h"
#include "support/PolicyNotice.h"
#include "support/Text.h"
#include "throws/LoadedThrowingModule.h"

// The agent is there, and the module has entered for all services and offers everything.
class ThrowsTest : public AgentTest {
protected:
    ThrowsTest();
    // Leaves the test out for a pair of module and bridge that promises nothing.
    void SetUp() override;
    void TearDown() override;

    // Has the bridge call the module in that place: the agent's question and what it was answered, what was written,
    // and what the module told.
    std::vector<std::string> Ask(Place place);

    static constexpr const char* id = "THROWING1000";
    LoadedThrowingModule module;

private:
    std::string AskOnce(Place place) const;

    const std::wstring wideId = Wide(id);
};
