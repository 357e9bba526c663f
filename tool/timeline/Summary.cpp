#include "tool/timeline/Summary.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace tool {

namespace {

using nlohmann::ordered_json;

// Such as "17.3 ms": of microseconds.
std::string DurationText(double microseconds) {
    if (microseconds < 1e3) {
        return fmt::format("{:.1f} \u00B5s", microseconds);
    }
    return microseconds < 1e6 ? fmt::format("{:.1f} ms", microseconds / 1e3)
                              : fmt::format("{:.1f} s", microseconds / 1e6);
}

std::string Counted(size_t count, const char* one, const char* many) {
    return fmt::format("{} {}", count, count == 1 ? one : many);
}

std::string TextArgument(const RecordEvent& event, const char* name) {
    const auto found = event.arguments.find(name);
    return found != event.arguments.end() && found->is_string() ? found->get<std::string>() : "";
}

// A slow log line is its sink's; the agent's changes take their time.
bool MayBeSlow(const RecordEvent& event) {
    return !event.isInstant && (event.kind == Kind::Call || event.kind == Kind::Callback);
}

double Rounded(double microseconds) {
    return std::round(microseconds * 1000) / 1000;
}

// One event, as it stands in the lists.
ordered_json EventForMachines(const Record& record, const RecordEvent& event) {
    const RecordThread& thread = record.threads[event.thread];
    ordered_json json = {{"name", event.name},
                         {"kind", NameOf(event.kind)},
                         {"process", thread.process},
                         {"thread", thread.id},
                         {"begin", Rounded(event.begin)}};
    if (!event.isInstant) {
        json["duration"] = Rounded(event.end - event.begin);
        json["hasEnded"] = event.isEndKnown;
    }
    if (event.arguments.is_object()) {
        json["arguments"] = event.arguments;
    }
    if (event.answers.is_object()) {
        json["answers"] = event.answers;
    }
    if (!event.failure.empty()) {
        json["failure"] = event.failure;
    }
    if (event.around.has_value()) {
        json["inside"] = record.events[*event.around].name;
    }
    return json;
}

ordered_json ListForMachines(const Record& record, const std::vector<size_t>& events) {
    ordered_json list = ordered_json::array();
    for (const size_t index : events) {
        list.push_back(EventForMachines(record, record.events[index]));
    }
    return list;
}

ordered_json ThreadsForMachines(const Record& record) {
    std::vector<size_t> counts(record.threads.size());
    for (const RecordEvent& event : record.events) {
        ++counts[event.thread];
    }
    ordered_json threads = ordered_json::array();
    for (size_t i = 0; i < record.threads.size(); ++i) {
        ordered_json thread = {{"process", record.threads[i].process}, {"thread", record.threads[i].id}};
        if (!record.threads[i].name.empty()) {
            thread["name"] = record.threads[i].name;
        }
        thread["events"] = counts[i];
        threads.push_back(std::move(thread));
    }
    return threads;
}

}  // namespace

Summary Summarise(const Record& record) {
    constexpr size_t mostOfSlowest = 25;
    Summary summary;
    for (size_t i = 0; i < record.events.size(); ++i) {
        const RecordEvent& event = record.events[i];
        if (event.kind == Kind::Finding) {
            summary.findings.push_back(i);
        } else if (event.kind == Kind::Note) {
            summary.notes.push_back(i);
        }
        if (!event.failure.empty()) {
            summary.failed.push_back(i);
        }
        if (MayBeSlow(event)) {
            summary.slowest.push_back(i);
        }
    }
    std::stable_sort(summary.slowest.begin(), summary.slowest.end(), [&](size_t left, size_t right) {
        const RecordEvent& first = record.events[left];
        const RecordEvent& second = record.events[right];
        return first.end - first.begin > second.end - second.begin;
    });
    summary.slowest.resize(std::min(summary.slowest.size(), mostOfSlowest));
    return summary;
}

std::string SummaryForMachines(const Record& record, const Summary& summary) {
    ordered_json json = {{"events", record.events.size()},
                         {"leftOut", record.leftOut},
                         {"duration", Rounded(record.duration)},
                         {"isComplete", record.isComplete}};
    json["brokenLine"] = record.brokenLine.has_value() ? ordered_json(*record.brokenLine) : ordered_json(nullptr);
    json["threads"] = ThreadsForMachines(record);
    json["findings"] = ListForMachines(record, summary.findings);
    json["notes"] = ListForMachines(record, summary.notes);
    json["failed"] = ListForMachines(record, summary.failed);
    json["slowest"] = ListForMachines(record, summary.slowest);
    return json.dump(2);
}

std::string SummaryLine(const Record& record, const Summary& summary) {
    return fmt::format("{} of {} in {}; {}, {}", Counted(record.events.size(), "event", "events"),
                       Counted(record.threads.size(), "thread", "threads"), DurationText(record.duration),
                       Counted(summary.findings.size(), "finding", "findings"),
                       Counted(summary.failed.size(), "failed call", "failed calls"));
}

std::string FindingText(const Record& record, const RecordEvent& finding) {
    const std::string product = TextArgument(finding, "product");
    std::string text = fmt::format("[{}] {} at {}, thread {}", TextArgument(finding, "rule"),
                                   product.empty() ? "(no product)" : product, DurationText(finding.begin),
                                   record.threads[finding.thread].id);
    if (finding.around.has_value()) {
        text += ", in " + record.events[*finding.around].name;
    }
    return text;
}

}  // namespace tool
