#pragma once

#include <gmock/gmock.h>

#include <string>
#include <string_view>
#include <vector>

#include "support/BridgeTest.h"
#include "support/LineLog.h"
#include "support/OnPurpose.h"
#include "vsmsgbus.hpp"

// A test of the C++ layer on a machine that has the agent. The products that it makes have left when it ends.
class LayerTest : public InstalledAgentTest {
protected:
    static constexpr char id[] = "PRODUCT1000";

    // Handlers that write their lines to `lines`, each as "<level>: <text>".
    vsmsgbus::Handlers Logged(vsmsgbus::Handlers handlers) {
        handlers.log = [this](int level, std::wstring_view line) {
            lines.Add(std::to_string(level) + ": " + Narrow(line));
        };
        return handlers;
    }

    LineLog lines;

    // Most tests are not about what is logged.
    const OnPurpose usualMistakes{"ENTRY-NO-SINK"};
};
