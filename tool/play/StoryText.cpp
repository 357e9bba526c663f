#include "tool/play/StoryText.h"

#include <algorithm>
#include <iterator>
#include <utility>
#include <vector>

namespace tool::play {

namespace {

using Json = nlohmann::json;

// Characters of a text, with the lines counted that were read.
class CountingIterator {
public:
    using iterator_category = std::input_iterator_tag;
    using value_type = char;
    using difference_type = std::ptrdiff_t;
    using pointer = const char*;
    using reference = const char&;

    CountingIterator(const char* begin, int* lineCount) : at(begin), line(lineCount) {}

    reference operator*() const { return *at; }
    CountingIterator& operator++() {
        *line += *at == '\n' ? 1 : 0;
        ++at;
        return *this;
    }
    CountingIterator operator++(int) {
        CountingIterator before = *this;
        ++*this;
        return before;
    }
    friend bool operator==(const CountingIterator& a, const CountingIterator& b) { return a.at == b.at; }
    friend bool operator!=(const CountingIterator& a, const CountingIterator& b) { return a.at != b.at; }

private:
    const char* at;
    int* line;
};

std::string Escaped(const std::string& name) {
    std::string escaped;
    for (const char character : name) {
        escaped += character == '~' ? "~0" : character == '/' ? "~1" : std::string(1, character);
    }
    return escaped;
}

// Notes the line of each value while the text is read.
class LineNotes : public nlohmann::json_sax<Json> {
public:
    LineNotes(const int& currentLine, std::map<std::string, int>& lineTable) : line(currentLine), lines(lineTable) {}

    // The pointer of a member that comes twice; empty when none does.
    std::string Twice() const { return twice; }
    std::string Error() const { return error; }

    bool null() override { return Value(); }
    bool boolean(bool /*value*/) override { return Value(); }
    // The reader is one character further, perhaps on the next line: where the number's parent stands is near enough.
    bool number_integer(number_integer_t /*value*/) override { return Advance(); }
    bool number_unsigned(number_unsigned_t /*value*/) override { return Advance(); }
    bool number_float(number_float_t /*value*/, const string_t& /*text*/) override { return Advance(); }
    bool string(string_t& /*value*/) override { return Value(); }
    bool binary(binary_t& /*value*/) override { return Value(); }
    bool start_object(size_t /*elements*/) override { return Begin(false); }
    bool start_array(size_t /*elements*/) override { return Begin(true); }
    bool end_object() override { return End(); }
    bool end_array() override { return End(); }
    bool key(string_t& name) override {
        parents.back().member = Escaped(name);
        if (!lines.emplace(Pointer(), line).second) {
            twice = Pointer();
        }
        return twice.empty();
    }
    bool parse_error(size_t /*position*/, const std::string& /*lastToken*/, const Json::exception& failure) override {
        error = failure.what();
        return false;
    }

private:
    struct Parent {
        bool isArray;
        size_t index = 0;
        std::string member = {};
    };

    std::string Pointer() const {
        std::string pointer;
        for (const Parent& parent : parents) {
            pointer += '/' + (parent.isArray ? std::to_string(parent.index) : parent.member);
        }
        return pointer;
    }
    bool Advance() {
        if (!parents.empty()) {
            ++parents.back().index;
        }
        return true;
    }
    bool Value() {
        lines.emplace(Pointer(), line);
        return Advance();
    }
    bool Begin(bool isArray) {
        lines.emplace(Pointer(), line);
        parents.push_back({isArray});
        return true;
    }
    bool End() {
        parents.pop_back();
        return Advance();
    }

    const int& line;
    std::map<std::string, int>& lines;
    std::vector<Parent> parents;
    std::string twice;
    std::string error;
};

// The JSON reader's reason, without its own name and number in front.
std::string PlainReason(const std::string& reason) {
    const size_t begin = reason.find(": ");
    return "this is no JSON: " + (begin != std::string::npos ? reason.substr(begin + 2) : reason);
}

}  // namespace

StoryText::StoryText(std::string file, std::string_view text) : name(std::move(file)) {
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    if (text.starts_with(byteOrderMark)) {
        text.remove_prefix(byteOrderMark.size());
    }
    int line = 1;
    LineNotes notes(line, lines);
    const bool isRead = Json::sax_parse(CountingIterator(text.data(), &line),
                                        CountingIterator(text.data() + text.size(), &line), &notes);
    if (!notes.Twice().empty()) {
        const std::string pointer = notes.Twice();
        RefuseLine(line, "\"" + pointer.substr(pointer.rfind('/') + 1) + "\" comes twice");
    }
    if (!isRead) {
        RefuseLine(line, PlainReason(notes.Error()));
    }
    root = Json::parse(text);
}

int StoryText::LineOf(std::string pointer) const {
    for (;;) {
        const auto found = lines.find(pointer);
        if (found != lines.end() || pointer.empty()) {
            return found != lines.end() ? found->second : 1;
        }
        pointer.erase(pointer.rfind('/'));
    }
}

void StoryText::Refuse(const std::string& pointer, const std::string& reason) const {
    RefuseLine(LineOf(pointer), reason);
}

void StoryText::RefuseLine(int line, const std::string& reason) const {
    throw WrongStory(name + ":" + std::to_string(line) + ": " + reason);
}

}  // namespace tool::play
