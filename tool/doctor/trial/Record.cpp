#include "tool/doctor/trial/Record.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <sstream>

#include "checking/Services.h"
#include "tool/files/WholeFile.h"

namespace tool::doctor {

namespace {

using nlohmann::json;

bool IsRegistering(const std::string& function) {
    return std::any_of(checking::services.begin(), checking::services.end(),
                       [&](const auto& service) { return function == service.set; });
}

// The line's event, without the comma behind it.
json EventOf(std::string line) {
    line.erase(line.find_last_of('}') + 1);
    return json::parse(line, nullptr, false);
}

template <class Value>
Value Argument(const json& event, const char* name, Value otherwise) {
    const auto arguments = event.find("args");
    return arguments != event.end() ? arguments->value(name, otherwise) : otherwise;
}

}  // namespace

Record::Record(const std::filesystem::path& file) {
    std::istringstream lines(ReadWholeFile(file).value_or(""));
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with('{')) {
            ++events;
            ReadLine(line);
        }
    }
}

void Record::ReadLine(const std::string& line) {
    const json event = EventOf(line);
    if (!event.is_object()) {
        return;
    }
    const std::string name = event.value("name", "");
    const bool isBegin = event.value("ph", "") == "B";
    const std::string product = Argument<std::string>(event, "product", "");
    const auto thread = event.value("tid", uint32_t{0});
    if (name == "VsMsgbusEntry" && isBegin) {
        products.try_emplace(product, Product{Argument<uint32_t>(event, "mask", 0)});
        entering[thread].push_back(product);
    } else if (name == "VsMsgbusEntry" && !entering[thread].empty()) {
        products[entering[thread].back()].answer = Argument<int64_t>(event, "answer", 1) != 0;
        entering[thread].pop_back();
    } else if (name == "VsMsgbusExit" && isBegin) {
        if (const auto left = products.find(product); left != products.end()) {
            left->second.hasLeft = true;
        }
    } else if (isBegin && IsRegistering(name)) {
        registered[name].insert(product);
    } else if (name == "agent client starts") {
        hasAgent = true;
    }
}

}  // namespace tool::doctor
