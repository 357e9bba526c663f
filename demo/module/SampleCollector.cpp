#include "SampleCollector.h"

#include <fmt/format.h>
#include <windows.h>

#include "MachineFacts.h"

// Runs on a thread of the agent's.
void SampleCollector::CollectProperties(bool /*full*/, ISet* set) {
    int taken = 0;
    const auto facts = ReadMachineFacts();
    for (const MachineFact& fact : facts) {
        if (set->SetProperty(fact.path.c_str(), fact.name.c_str(), fact.value.c_str())) {
            ++taken;
        }
    }
    speaker.Say("module", fmt::format("is asked on thread {}, answers with {} properties; the agent takes {}",
                                      ::GetCurrentThreadId(), facts.size(), taken));
}
