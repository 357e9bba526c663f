#include "tool/timeline/TraceReader.h"

#include <fmt/format.h>

#include <algorithm>
#include <stdexcept>

namespace tool {

namespace {

constexpr size_t none = std::string_view::npos;

class TraceReader {
public:
    TraceReader(std::string_view whole, const std::function<void(double)>& listener) : text(whole), tell(listener) {}

    Trace Read() {
        FindBegin();
        constexpr size_t eventsBetweenTelling = 4096;
        while (ReadElement()) {
            if (trace.events.size() % eventsBetweenTelling == 0) {
                tell(static_cast<double>(at) / static_cast<double>(text.size()));
            }
        }
        if (broken.has_value() && trace.events.empty()) {
            Refuse(broken->place, broken->reason);
        }
        if (broken.has_value()) {
            trace.brokenLine = LineOf(broken->place);
        }
        return std::move(trace);
    }

private:
    struct Broken {
        size_t place;
        std::string reason;
    };

    size_t LineOf(size_t place) const {
        return 1 + static_cast<size_t>(std::count(text.begin(), text.begin() + static_cast<ptrdiff_t>(place), '\n'));
    }

    [[noreturn]] void Refuse(size_t place, std::string_view reason) const {
        const size_t lineEnd = place == 0 ? none : text.rfind('\n', place - 1);
        const size_t column = lineEnd == none ? place + 1 : place - lineEnd;
        throw std::runtime_error(fmt::format("line {}, column {}: {}", LineOf(place), column, reason));
    }

    // Zeros count as blanks: a crash of the machine may leave some.
    void SkipBlanks(std::string_view more) {
        while (at < text.size() && (text[at] == '\0' || std::string_view(" \t\r\n").find(text[at]) != none ||
                                    more.find(text[at]) != none)) {
            ++at;
        }
    }

    void FindBegin() {
        if (text.substr(0, 3) == "\xEF\xBB\xBF") {
            at = 3;
        }
        SkipBlanks("");
        if (at == text.size()) {
            Refuse(0, "the file is empty");
        }
        if (text[at] == '{') {
            FindEventsOfObject();
        }
        if (text[at] != '[') {
            Refuse(at, "a trace begins with [ or {");
        }
        ++at;
    }

    void FindEventsOfObject() {
        constexpr std::string_view member = "\"traceEvents\"";
        const size_t found = text.find(member, at);
        if (found == none) {
            Refuse(at, "the object has no \"traceEvents\"");
        }
        isInObject = true;
        at = found + member.size();
        SkipBlanks(":");
        if (at == text.size() || text[at] != '[') {
            Refuse(std::min(at, text.size() - 1), "\"traceEvents\" is no array");
        }
    }

    // False at the end.
    bool ReadElement() {
        SkipBlanks(",");
        if (at == text.size()) {
            return false;
        }
        if (text[at] == ']') {
            ++at;
            ReadEnd();
            return false;
        }
        if (text[at] != '{') {
            return SkipBroken(at, "an event is expected, which begins with {");
        }
        const size_t begin = at;
        const size_t end = EndOfObject();
        if (end == none) {
            return SkipBroken(begin, "the event has no end");
        }
        at = end;
        const std::string_view element = text.substr(begin, end - begin);
        try {
            trace.events.push_back(EventFromJson(nlohmann::ordered_json::parse(element.begin(), element.end())));
        } catch (const nlohmann::json::exception& wrong) {
            return SkipBroken(begin, ReasonOf(wrong.what()));
        } catch (const std::runtime_error& wrong) {
            return SkipBroken(begin, wrong.what());
        }
        return true;
    }

    void ReadEnd() {
        trace.isComplete = true;
        SkipBlanks("");
        if (at != text.size() && !isInObject) {
            Refuse(at, "something stands behind the end of the trace");
        }
    }

    // Behind the brace that closes the one at `at`; none when there is no such brace, or a text is not ended in its
    // line.
    size_t EndOfObject() const {
        constexpr size_t deepest = 64;
        size_t depth = 0;
        bool isInText = false;
        for (size_t i = at; i < text.size(); ++i) {
            const char c = text[i];
            if (isInText) {
                if (c == '\n') {
                    return none;
                }
                i += c == '\\' ? 1 : 0;
                isInText = c != '"';
            } else if (c == '"') {
                isInText = true;
            } else if (c == '{' || c == '[') {
                if (++depth > deepest) {
                    Refuse(i, "what is nested so deep is no event");
                }
            } else if ((c == '}' || c == ']') && --depth == 0) {
                return i + 1;
            }
        }
        return none;
    }

    // The message without the JSON library's own number, which stands in brackets in front.
    static std::string ReasonOf(std::string_view message) {
        const size_t end = message.find("] ");
        return std::string("the event is no JSON: ").append(end == none ? message : message.substr(end + 2));
    }

    // To what stands behind a comma; else to the next line that begins with an event, or with the array's end. A crash
    // breaks one event: with a second one, this is no trace.
    bool SkipBroken(size_t place, std::string reason) {
        if (broken.has_value()) {
            Refuse(broken->place, broken->reason);
        }
        broken = {place, std::move(reason)};
        if (at != place && at < text.size() && (text[at] == ',' || text[at] == ']')) {
            return true;
        }
        for (size_t end = text.find('\n', place); end != none; end = text.find('\n', end + 1)) {
            if (end + 1 < text.size() && (text[end + 1] == '{' || text[end + 1] == ']')) {
                at = end + 1;
                return true;
            }
        }
        return false;
    }

    const std::string_view text;
    const std::function<void(double)>& tell;
    size_t at = 0;
    bool isInObject = false;
    std::optional<Broken> broken;
    Trace trace;
};

}  // namespace

Trace ReadTrace(std::string_view text, const std::function<void(double share)>& tell) {
    return TraceReader(text, tell).Read();
}

}  // namespace tool
