#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "checking/Rules.h"

namespace tool::doctor {

// A finding of the checking bridge: one line of its file.
struct RuleFinding {
    const checking::RuleText* rule;
    std::string product;
    std::string what;    // and what comes of it
    std::string remedy;  // what to do
};

// In the order in which they were made. Lines of rules that are not known are left out.
std::vector<RuleFinding> ReadFindings(const std::filesystem::path& file);

// A finding made here of the rule, with what takes the places in its texts.
RuleFinding MakeFinding(checking::Rule rule, const std::string& product,
                        std::initializer_list<std::string_view> details);

}  // namespace tool::doctor
