#include "tool/doctor/trial/Findings.h"

#include <algorithm>
#include <sstream>

#include "tool/files/WholeFile.h"

namespace tool::doctor {

namespace {

// Where the remedy begins in the line: the last place at which its text up to the first "{1}" stands.
size_t BeginOfRemedy(const std::string& text, std::string_view remedy) {
    return text.rfind(". " + std::string(remedy.substr(0, remedy.find('{'))));
}

// "VsMsgbus check [RULE] PRODUCT: what: what comes of it. What to do. (thread 12, in Export)"
void AddFinding(std::string line, std::vector<RuleFinding>& findings) {
    const size_t begin = line.find('[');
    const size_t end = line.find("] ", std::min(begin, line.size()));
    const size_t colon = line.find(": ", std::min(end, line.size()));
    if (!line.starts_with("VsMsgbus ") || colon == std::string::npos) {
        return;
    }
    const checking::RuleText* const rule = checking::FindRule(line.substr(begin + 1, end - begin - 1).c_str());
    if (rule == nullptr) {
        return;
    }
    const std::string product = line.substr(end + 2, colon - end - 2);
    const std::string text = line.substr(colon + 2, line.rfind(" (thread ") - colon - 2);
    const size_t remedy = BeginOfRemedy(text, rule->remedy);
    if (remedy == std::string::npos) {
        findings.push_back({rule, product, text, rule->remedy});
    } else {
        findings.push_back({rule, product, text.substr(0, remedy + 1), text.substr(remedy + 2)});
    }
}

}  // namespace

std::vector<RuleFinding> ReadFindings(const std::filesystem::path& file) {
    std::vector<RuleFinding> findings;
    std::istringstream lines(ReadWholeFile(file).value_or(""));
    for (std::string line; std::getline(lines, line);) {
        AddFinding(std::move(line), findings);
    }
    return findings;
}

RuleFinding MakeFinding(checking::Rule rule, const std::string& product,
                        std::initializer_list<std::string_view> details) {
    const checking::RuleText& text = checking::TextOf(rule);
    return {&text, product,
            checking::WithDetails(text.what, details) + ": " + checking::WithDetails(text.consequence, details) + ".",
            checking::WithDetails(text.remedy, details)};
}

}  // namespace tool::doctor
