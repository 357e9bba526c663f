#include "flows/OutcomeTable.h"

#include <algorithm>
#include <fstream>
#include <functional>
#include <sstream>
#include <stdexcept>

namespace {

constexpr char indent[] = "    ";
constexpr char noChange[] = "(the same)";

constexpr char missing[] = "missing";

Lines Split(const std::string& text, char separator) {
    Lines parts;
    std::istringstream stream(text);
    for (std::string part; std::getline(stream, part, separator);) {
        parts.push_back(part);
    }
    return parts;
}

std::string Join(const Lines& parts, char separator) {
    std::string text;
    for (const std::string& part : parts) {
        text += (text.empty() ? "" : std::string(1, separator)) + part;
    }
    return text;
}

// The names of the cases in one line of the file, such as "once+missing f 1 2".
Lines NamesIn(const std::string& line) {
    const Lines words = Split(line, ' ');
    if (words.size() == 1) {
        return words;
    }
    Lines names;
    for (const std::string& mode : Split(words[0], '+')) {
        if (mode == missing) {
            names.push_back(mode + " " + words[1]);
            continue;
        }
        for (size_t i = 2; i < words.size(); ++i) {
            names.push_back(mode + " " + words[1] + " " + words[i]);
        }
    }
    return names;
}

// The cases of one function that are still to be written in a line, as the numbers of each mode.
struct CasesOfFunction {
    std::string function;
    std::map<std::string, Lines, std::greater<>> numbers;  // "once" before "missing" before "from-then-on"
};

// As few lines as the modes allow: those with the same numbers share one, and a function that is missing joins any.
Lines LinesOf(CasesOfFunction cases) {
    const bool isMissing = cases.numbers.erase(missing) != 0;
    std::map<Lines, Lines> modes;
    for (const auto& [mode, numbers] : cases.numbers) {
        modes[numbers].push_back(mode);
    }
    if (modes.empty()) {
        return {std::string(missing) + " " + cases.function};
    }
    if (isMissing) {
        modes.begin()->second.emplace_back(missing);
    }
    Lines lines;
    for (const auto& [numbers, names] : modes) {
        lines.push_back(Join(names, '+') + " " + cases.function + " " + Join(numbers, ' '));
    }
    return lines;
}

// The lines for cases of one outcome.
Lines LinesOf(const Lines& names) {
    std::vector<CasesOfFunction> functions;
    for (const std::string& name : names) {
        const Lines words = Split(name, ' ');
        auto known = std::find_if(functions.begin(), functions.end(),
                                  [&](const CasesOfFunction& cases) { return cases.function == words[1]; });
        if (known == functions.end()) {
            known = functions.insert(functions.end(), CasesOfFunction{words[1], {}});
        }
        known->numbers[words[0]].push_back(words.size() > 2 ? words[2] : "");
    }
    Lines lines;
    for (const CasesOfFunction& cases : functions) {
        for (const std::string& line : LinesOf(cases)) {
            lines.push_back(line);
        }
    }
    return lines;
}

}  // namespace

OutcomeTable OutcomeTable::Read(const std::filesystem::path& path) {
    std::ifstream file(path);
    if (!file) {
        throw std::runtime_error("no table of outcomes: " + path.string());
    }
    OutcomeTable table;
    Lines names;
    bool isInChange = false;
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with(indent)) {
            isInChange = true;
            const std::string text = line.substr(sizeof indent - 1);
            for (const std::string& name : names) {
                (name == "good" ? table.good : table.changes[name]).push_back(text);
            }
        } else if (!line.empty()) {
            if (isInChange) {
                names.clear();
                isInChange = false;
            }
            const Lines more = NamesIn(line);
            names.insert(names.end(), more.begin(), more.end());
        }
    }
    for (auto& [name, change] : table.changes) {
        if (change == Lines{noChange}) {
            change.clear();
        }
    }
    return table;
}

void OutcomeTable::Write(const std::filesystem::path& path, const Lines& order) const {
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file << "good\n";
    for (const std::string& line : good) {
        file << indent << line << "\n";
    }
    Lines left = order;
    while (!left.empty()) {
        const Lines change = changes.at(left.front());
        const auto end = std::stable_partition(left.begin(), left.end(),
                                               [&](const std::string& name) { return changes.at(name) == change; });
        file << "\n";
        for (const std::string& line : LinesOf(Lines(left.begin(), end))) {
            file << line << "\n";
        }
        for (const std::string& line : change.empty() ? Lines{noChange} : change) {
            file << indent << line << "\n";
        }
        left.erase(left.begin(), end);
    }
    if (!file.flush()) {
        throw std::runtime_error("cannot be written: " + path.string());
    }
}
