#include "tool/doctor/checks/ModuleFindings.h"
#include "tool/doctor/Groups.h"

#include <fmt/format.h>

#include <algorithm>

#include "checking/MaskComparison.h"
#include "checking/Texts.h"

namespace tool::doctor {

namespace {

using checking::Rule;
using checking::ServiceText;

// The rules whose breach keeps the agent from asking the module, the first cause first.
constexpr Rule reasons[] = {Rule::EntryFailed,      Rule::IdUnusable,    Rule::IdDiffers,     Rule::NeverEntered,
                            Rule::MaskEmpty,        Rule::MaskMissing,   Rule::SetNull,       Rule::SetTwice,
                            Rule::InterfaceMissing, Rule::HeadersDiffer, Rule::InterfaceGone, Rule::OnEndedStack};

bool IsReason(const RuleFinding& finding) {
    return std::find(std::begin(reasons), std::end(reasons), finding.rule->rule) != std::end(reasons);
}

size_t RankOf(const RuleFinding& finding) {
    const auto* const found = std::find(std::begin(reasons), std::end(reasons), finding.rule->rule);
    return static_cast<size_t>(found - std::begin(reasons));
}

bool IsRegistered(const Record& record, const ServiceText& service, const std::string& product) {
    const auto ids = record.Registered().find(service.set);
    return ids != record.Registered().end() && ids->second.count(product) != 0;
}

std::string InterfacesOf(const Record& record, const std::string& product) {
    std::vector<std::string> nouns;
    for (const ServiceText& service : checking::services) {
        if (IsRegistered(record, service, product)) {
            nouns.emplace_back(service.noun);
        }
    }
    return nouns.empty() ? "nothing" : fmt::format("{}", fmt::join(nouns, ", "));
}

std::string ServicesOf(uint32_t mask) {
    std::vector<std::string> names;
    for (const ServiceText& service : checking::services) {
        if ((mask & service.bit) != 0) {
            names.emplace_back(service.bitName);
        }
    }
    return names.empty() ? "no service" : fmt::format("{}", fmt::join(names, ", "));
}

bool IsSameFolded(const std::string& one, const std::string& other) {
    return checking::Folded(checking::Wide(one)) == checking::Folded(checking::Wide(other));
}

// Whether the module enters as the product that is looked for.
Check CheckId(const Record& record, const Options& options) {
    constexpr char name[] = "enters as the product that is looked for";
    const auto& products = record.Products();
    if (products.count(options.product) != 0) {
        return Good(moduleGroup, name, {options.product});
    }
    std::vector<std::string> ids;
    for (const auto& [id, product] : products) {
        if (IsSameFolded(id, options.product)) {
            return Bad(moduleGroup, name, Problem::ModuleOfOtherSpelling, {id, options.product});
        }
        ids.push_back('"' + id + '"');
    }
    return Bad(moduleGroup, name, Problem::ModuleOfOtherId,
               {fmt::format("{}", fmt::join(ids, " and ")), options.product});
}

// The rules that the checking bridge looks at only while the agent runs, and after a delay.
constexpr Rule compared[] = {Rule::MaskMissing, Rule::InterfaceMissing, Rule::NeverEntered};

bool IsCompared(Rule rule) {
    return std::find(std::begin(compared), std::end(compared), rule) != std::end(compared);
}

void AddNeverEntered(const Record& record, std::vector<RuleFinding>& findings) {
    for (const ServiceText& service : checking::services) {
        const auto registered = record.Registered().find(service.set);
        if (registered == record.Registered().end()) {
            continue;
        }
        for (const std::string& id : registered->second) {
            if (record.Products().count(id) == 0) {
                findings.push_back(MakeFinding(Rule::NeverEntered, id, {service.noun}));
            }
        }
    }
}

// Compares ids, masks and interfaces of the record, with and without an agent.
void AddComparisons(const Record& record, std::vector<RuleFinding>& findings) {
    for (const auto& product : record.Products()) {
        const std::string& id = product.first;
        checking::CompareWithMask(
            product.second.mask, [&](const ServiceText& service) { return IsRegistered(record, service, id); },
            [&](Rule rule, std::initializer_list<std::string_view> details) {
                findings.push_back(MakeFinding(rule, id, details));
            });
    }
    AddNeverEntered(record, findings);
}

// Whether the trial causes the finding and not the module: it ends the process without having the module leave.
bool IsOfTrial(const RuleFinding& finding, bool isLeaving) {
    return !isLeaving && (finding.rule->rule == Rule::ExitMissing || finding.rule->rule == Rule::LeftRegistered);
}

Check CheckOf(const RuleFinding& finding) {
    const std::string name = fmt::format("checking bridge: {}", finding.rule->name);
    const std::string product = finding.product.find(' ') == std::string::npos
                                    ? fmt::format("The module \"{}\": {}", finding.product, finding.what)
                                    : "The module: " + finding.what;
    if (checking::IsNote(finding.rule->rule)) {
        return Note(moduleGroup, name, {finding.what, finding.remedy});
    }
    return Bad(moduleGroup, name, IsReason(finding) ? Problem::ModuleFinding : Problem::ModuleMistake,
               {finding.rule->name, product, finding.remedy});
}

}  // namespace

Checks CheckModuleProducts(const Record& record, const std::vector<RuleFinding>& findings, bool isLeaving,
                           const Options& options) {
    Checks checks;
    for (const auto& [id, product] : record.Products()) {
        checks.push_back(Good(moduleGroup, fmt::format("product \"{}\"", id),
                              {fmt::format("enters with mask 0x{:X}: {}", product.mask, ServicesOf(product.mask)),
                               fmt::format("registers {}", InterfacesOf(record, id))}));
    }
    if (!options.product.empty()) {
        checks.push_back(CheckId(record, options));
    }
    std::vector<RuleFinding> all;
    std::copy_if(findings.begin(), findings.end(), std::back_inserter(all), [&](const RuleFinding& finding) {
        return !IsOfTrial(finding, isLeaving) && !IsCompared(finding.rule->rule);
    });
    AddComparisons(record, all);
    std::stable_sort(all.begin(), all.end(),
                     [](const RuleFinding& one, const RuleFinding& other) { return RankOf(one) < RankOf(other); });
    for (const RuleFinding& finding : all) {
        checks.push_back(CheckOf(finding));
    }
    return checks;
}

}  // namespace tool::doctor
