#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "flows/TranscriptChange.h"

// The expected outcomes of a flow: the transcript of its good run, and for each fault, by the name of its case, how the
// transcript then changes. As a file:
//
//     good
//         <line of the transcript>
//
//     once+missing ny_policy_get 1
//     once+from-then-on ny_policy_uri_create 1 2
//         -3 <line that is gone>
//         +3 <line that comes behind line 3>
//
// Cases of one outcome stand together: the first line above is those of "once ny_policy_get 1" and "missing
// ny_policy_get", the second one four cases. "(the same)" stands for no change.
struct OutcomeTable {
    Lines good;
    std::map<std::string, Lines> changes;

    // Throws std::runtime_error for a file that is not there or not of that form.
    static OutcomeTable Read(const std::filesystem::path& file);
    // `order` has the names of the cases as they come in the flow.
    void Write(const std::filesystem::path& file, const Lines& order) const;
};
