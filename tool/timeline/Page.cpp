#include "tool/timeline/Page.h"

#include <cmath>
#include <map>

#include "tool/timeline/PageWithoutRecord.h"

namespace tool {

namespace {

using nlohmann::ordered_json;

// Whole numbers that JavaScript would round stand as texts.
void KeepLargeNumbers(ordered_json& value) {
    constexpr int64_t most = int64_t{1} << 53;
    if (value.is_number_unsigned() ? value.get<uint64_t>() > static_cast<uint64_t>(most)
                                   : value.is_number_integer() && value.get<int64_t>() < -most) {
        value = value.dump();
    } else if (value.is_structured()) {
        for (ordered_json& member : value) {
            KeepLargeNumbers(member);
        }
    }
}

ordered_json ForJavaScript(ordered_json value) {
    KeepLargeNumbers(value);
    return value;
}

// Tenths of a microsecond tell apart what the clock does.
double Tenths(double microseconds) {
    return std::round(microseconds * 10);
}

// The events as columns: half as large as objects, and much sooner read. What most events lack stands apart, by the
// event's index.
ordered_json ColumnsOf(const Record& record) {
    ordered_json columns;
    for (const char* const column :
         {"thread", "kind", "name", "begin", "duration", "depth", "around", "arguments", "answers"}) {
        columns[column] = ordered_json::array();
    }
    std::map<std::string_view, size_t> names;
    ordered_json texts = ordered_json::array();
    ordered_json failures = ordered_json::object();
    ordered_json instants = ordered_json::array();
    ordered_json early = ordered_json::array();
    ordered_json open = ordered_json::array();
    for (size_t i = 0; i < record.events.size(); ++i) {
        const RecordEvent& event = record.events[i];
        const auto [name, isNew] = names.try_emplace(event.name, names.size());
        if (isNew) {
            texts.push_back(event.name);
        }
        columns["thread"].push_back(event.thread);
        columns["kind"].push_back(static_cast<int>(event.kind));
        columns["name"].push_back(name->second);
        columns["begin"].push_back(static_cast<int64_t>(Tenths(event.begin)));
        columns["duration"].push_back(static_cast<int64_t>(Tenths(event.end) - Tenths(event.begin)));
        columns["depth"].push_back(event.depth);
        columns["around"].push_back(event.around.has_value() ? static_cast<int64_t>(*event.around) : -1);
        columns["arguments"].push_back(event.arguments.is_object() ? ForJavaScript(event.arguments) : ordered_json(0));
        columns["answers"].push_back(event.answers.is_object() ? ForJavaScript(event.answers) : ordered_json(0));
        if (event.isInstant) {
            instants.push_back(i);
        }
        if (!event.isBeginKnown) {
            early.push_back(i);
        }
        if (!event.isEndKnown) {
            open.push_back(i);
        }
        if (!event.failure.empty()) {
            failures[std::to_string(i)] = event.failure;
        }
    }
    columns["names"] = std::move(texts);
    columns["instants"] = std::move(instants);
    columns["early"] = std::move(early);
    columns["open"] = std::move(open);
    columns["failures"] = std::move(failures);
    return columns;
}

ordered_json MessagesOf(const Record& record) {
    ordered_json messages = ordered_json::object();
    for (const RecordEvent& event : record.events) {
        if (event.kind != Kind::Finding && event.kind != Kind::Note) {
            continue;
        }
        const auto rule = event.arguments.find("rule");
        if (rule != event.arguments.end() && rule->is_string()) {
            messages[rule->get<std::string>()] = MessageOfRule(rule->get<std::string>());
        }
    }
    return messages;
}

ordered_json DataOf(std::string_view title, const Record& record, const Summary& summary) {
    ordered_json threads = ordered_json::array();
    for (const RecordThread& thread : record.threads) {
        threads.push_back({thread.process, thread.id, thread.name});
    }
    ordered_json kinds = ordered_json::array();
    for (int kind = 0; kind <= static_cast<int>(Kind::Other); ++kind) {
        kinds.push_back(NameOf(static_cast<Kind>(kind)));
    }
    return {{"title", title},
            {"duration", static_cast<int64_t>(Tenths(record.duration))},
            {"isComplete", record.isComplete},
            {"brokenLine", record.brokenLine.value_or(0)},
            {"leftOut", record.leftOut},
            {"kinds", kinds},
            {"threads", threads},
            {"messages", MessagesOf(record)},
            {"findings", summary.findings},
            {"notes", summary.notes},
            {"failed", summary.failed},
            {"slowest", summary.slowest},
            {"events", ColumnsOf(record)}};
}

// As it may stand in a script element: no text ends that.
std::string WithoutTags(const std::string& json) {
    std::string text;
    text.reserve(json.size());
    for (const char c : json) {
        if (c == '<') {
            text += "\\u003c";
        } else {
            text += c;
        }
    }
    return text;
}

}  // namespace

std::string MakePage(std::string_view title, const Record& record, const Summary& summary) {
    constexpr std::string_view place = "<script type=\"application/json\" id=\"record\">";
    const std::string_view page = PageWithoutRecord();
    const size_t found = page.find(place) + place.size();
    std::string made(page.substr(0, found));
    made += WithoutTags(DataOf(title, record, summary).dump());
    // Without a record there stands null.
    return made.append(page.substr(page.find('<', found)));
}

}  // namespace tool
