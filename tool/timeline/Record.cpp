#include "tool/timeline/Record.h"

#include <algorithm>
#include <map>
#include <utility>

namespace tool {

namespace {

constexpr auto byTime = [](const TraceEvent& left, const TraceEvent& right) { return left.time < right.time; };

class RecordMaker {
public:
    explicit RecordMaker(Trace&& from) : trace(std::move(from)) {
        record.isComplete = trace.isComplete;
        record.brokenLine = trace.brokenLine;
    }

    Record Make() {
        TakeNames();
        // In a file that was full, the newest events stand before the oldest.
        std::stable_sort(trace.events.begin(), trace.events.end(), byTime);
        if (!trace.events.empty()) {
            first = trace.events.front().time;
        }
        for (TraceEvent& event : trace.events) {
            Add(event);
        }
        EndWhatIsOpen();
        std::stable_sort(record.events.begin(), record.events.end(),
                         [](const RecordEvent& left, const RecordEvent& right) {
                             return left.begin != right.begin ? left.begin < right.begin : left.end > right.end;
                         });
        FindWhatIsAround();
        return std::move(record);
    }

private:
    // Takes the names of threads out of the trace: their events have no time.
    void TakeNames() {
        for (const TraceEvent& event : trace.events) {
            if (event.phase == 'M' && event.name == "thread_name" && event.arguments.contains("name") &&
                event.arguments["name"].is_string()) {
                names[{event.process, event.thread}] = event.arguments["name"].get<std::string>();
            }
        }
        trace.events.erase(std::remove_if(trace.events.begin(), trace.events.end(),
                                          [](const TraceEvent& event) { return event.phase == 'M'; }),
                           trace.events.end());
    }

    uint32_t ThreadOf(const TraceEvent& event) {
        const std::pair key(event.process, event.thread);
        const auto [found, isNew] = threads.try_emplace(key, static_cast<uint32_t>(record.threads.size()));
        if (isNew) {
            record.threads.push_back({event.process, event.thread, names[key]});
        }
        return found->second;
    }

    void Add(TraceEvent& event) {
        const double time = event.time - first;
        record.duration = std::max(record.duration, time + event.duration);
        switch (event.phase) {
            case 'B': open[ThreadOf(event)].push_back(AddSpan(event, time, time)); break;
            case 'E': End(event, time); break;
            case 'X': AddSpan(event, time, time + event.duration); break;
            case 'i':
            case 'I': AddInstant(event, time); break;
            default: ++record.leftOut; break;
        }
    }

    size_t AddSpan(TraceEvent& event, double begin, double end) {
        RecordEvent span;
        span.thread = ThreadOf(event);
        span.kind = KindOfSpan(event.name);
        span.name = std::move(event.name);
        span.begin = begin;
        span.end = end;
        span.arguments = std::move(event.arguments);
        if (event.phase == 'X') {
            span.failure = FailureOfSpan(span.name, span.arguments);
        }
        record.events.push_back(std::move(span));
        return record.events.size() - 1;
    }

    // Ends the innermost span of that name; the spans inside it have lost their ends. Without such a span, the span
    // began before the record.
    void End(TraceEvent& event, double time) {
        std::vector<size_t>& stack = open[ThreadOf(event)];
        const auto found = std::find_if(stack.rbegin(), stack.rend(), [&](size_t index) {
            return event.name.empty() || record.events[index].name == event.name;
        });
        if (found == stack.rend()) {
            const size_t early = AddSpan(event, 0, time);
            record.events[early].isBeginKnown = false;
            record.events[early].answers = std::exchange(record.events[early].arguments, nullptr);
            record.events[early].failure = FailureOfSpan(record.events[early].name, record.events[early].answers);
            return;
        }
        const auto outer = std::prev(found.base());
        for (auto inner = outer; inner != stack.end(); ++inner) {
            record.events[*inner].end = time;
            record.events[*inner].isEndKnown = inner == outer;
        }
        RecordEvent& span = record.events[*outer];
        span.answers = std::move(event.arguments);
        span.failure = FailureOfSpan(span.name, span.answers);
        stack.erase(outer, stack.end());
    }

    void AddInstant(TraceEvent& event, double time) {
        RecordEvent instant;
        instant.isInstant = true;
        instant.thread = ThreadOf(event);
        instant.kind = KindOfInstant(event.name, event.arguments);
        instant.failure = FailureOfInstant(event.name, event.arguments);
        instant.name = std::move(event.name);
        instant.begin = instant.end = time;
        instant.arguments = std::move(event.arguments);
        record.events.push_back(std::move(instant));
    }

    void EndWhatIsOpen() {
        for (const auto& [thread, stack] : open) {
            for (const size_t index : stack) {
                record.events[index].end = record.duration;
                record.events[index].isEndKnown = false;
            }
        }
    }

    void FindWhatIsAround() {
        std::vector<std::vector<size_t>> around(record.threads.size());
        for (size_t i = 0; i < record.events.size(); ++i) {
            RecordEvent& event = record.events[i];
            std::vector<size_t>& spans = around[event.thread];
            while (!spans.empty() && HasEnded(record.events[spans.back()], event)) {
                spans.pop_back();
            }
            if (!spans.empty()) {
                event.around = spans.back();
            }
            event.depth = static_cast<uint32_t>(spans.size());
            if (!event.isInstant) {
                spans.push_back(i);
            }
        }
    }

    // Before a later event. An instant at the span's end is inside it.
    static bool HasEnded(const RecordEvent& span, const RecordEvent& later) {
        return later.isInstant ? span.end < later.begin : span.end <= later.begin;
    }

    Trace trace;
    Record record;
    double first = 0;
    std::map<std::pair<std::string, std::string>, std::string> names;
    std::map<std::pair<std::string, std::string>, uint32_t> threads;
    std::map<uint32_t, std::vector<size_t>> open;  // of each thread, from the outer to the inner
};

}  // namespace

Record MakeRecord(Trace&& trace) {
    return RecordMaker(std::move(trace)).Make();
}

}  // namespace tool
