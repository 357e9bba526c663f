#include "flows/TranscriptChange.h"

#include <algorithm>
#include <cstddef>
#include <stdexcept>

namespace {

// At [i][j], how many lines the ends of both from line i and line j on have in common, in order.
std::vector<std::vector<size_t>> CommonLines(const Lines& from, const Lines& to) {
    std::vector<std::vector<size_t>> common(from.size() + 1, std::vector<size_t>(to.size() + 1));
    for (size_t i = from.size(); i-- > 0;) {
        for (size_t j = to.size(); j-- > 0;) {
            common[i][j] = from[i] == to[j] ? common[i + 1][j + 1] + 1 : std::max(common[i + 1][j], common[i][j + 1]);
        }
    }
    return common;
}

}  // namespace

Lines ChangeOf(const Lines& from, const Lines& to) {
    const auto common = CommonLines(from, to);
    Lines change;
    size_t i = 0;
    size_t j = 0;
    while (i < from.size() || j < to.size()) {
        if (i < from.size() && j < to.size() && from[i] == to[j]) {
            ++i;
            ++j;
        } else if (j == to.size() || (i < from.size() && common[i + 1][j] >= common[i][j + 1])) {
            change.push_back("-" + std::to_string(i + 1) + " " + from[i]);
            ++i;
        } else {
            change.push_back("+" + std::to_string(i) + " " + to[j]);
            ++j;
        }
    }
    return change;
}

Lines Changed(const Lines& from, const Lines& change) {
    Lines to;
    size_t next = 0;
    const auto copyUpTo = [&](size_t end) {
        for (; next < std::min(end, from.size()); ++next) {
            to.push_back(from[next]);
        }
    };
    for (const std::string& line : change) {
        const size_t blank = line.find(' ');
        const size_t number = blank != std::string::npos && blank > 1 ? std::stoul(line.substr(1, blank - 1)) : 0;
        const std::string text = line.substr(std::min(blank, line.size() - 1) + 1);
        if (line.starts_with('+')) {
            copyUpTo(number);
            to.push_back(text);
        } else {
            copyUpTo(number - 1);
            if (number == 0 || next >= from.size() || from[next] != text) {
                throw std::runtime_error("no line of the good transcript: " + line);
            }
            ++next;
        }
    }
    copyUpTo(from.size());
    return to;
}
