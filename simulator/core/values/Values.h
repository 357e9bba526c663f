// The agent's values. A value never changes once it is made, so it may be read from any thread.
#pragma once

#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace simulator {

// Bytes with a zero behind the last one.
struct Buffer {
    std::string bytes;
};

struct WideBuffer {
    std::wstring text;
};

// A text that is held as it came and converted when the other form is first asked for. The references stay valid as
// long as the text does.
class Text {
public:
    explicit Text(std::string narrowText) : narrow(std::move(narrowText)) {}
    explicit Text(std::wstring wideText) : wide(std::move(wideText)) {}

    const std::string& Narrow() const;
    const std::wstring& Wide() const;

private:
    mutable std::mutex mutex;
    mutable std::optional<std::string> narrow;
    mutable std::optional<std::wstring> wide;
};

using ValuePointer = std::shared_ptr<struct Value>;

// Keys in the order in which they came, in UTF-8, each once.
struct Table {
    std::vector<std::pair<std::string, ValuePointer>> entries;
};

struct Array {
    std::vector<ValuePointer> elements;
};

struct Value {
    std::variant<std::shared_ptr<Text>, std::shared_ptr<Table>, std::shared_ptr<Array>> content;
};

ValuePointer MakeText(std::string text);
ValuePointer MakeText(std::wstring text);

// The text or the table of a value; both throw Failure when it holds something else.
const Text& TextOf(const Value& value);
std::shared_ptr<Table> TableOf(const Value& value);

// The value of that key, or null.
ValuePointer FindInTable(const Table& table, std::string_view key);
// An array of the table's keys.
std::shared_ptr<Array> KeysOf(const Table& table);

}  // namespace simulator
