// docs/CHECKS.md says what the rules say.
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <set>
#include <string>

#include "checking/Rules.h"

namespace {

using checking::RuleText;

constexpr char intro[] = R"(# What the checking bridge finds

`checking/VsMsgbus.dll` is the bridge with checks around it: put it in the place of `VsMsgbus.dll` while you develop, never
on a customer's machine. It gives the same answers, and names what goes wrong, each once for a product and a place:

```
VsMsgbus check [RULE] PRODUCT: what was done: what comes of it. What to do. (thread, and the export or callback)
```

The last ones of this page are notes (`VsMsgbus note [...]`) and no findings: FAILURE-IGNORED may be meant so, and those
after it say why the bridge has no agent, which is no mistake of a module's.

A `vsmsgbus::Product` that ends inside a handler of its own is named by REMOVE-INSIDE. The layer keeps the handler alive until
it has returned, but nobody keeps the library that its code is in.

The lines go to the debugger's output, to standard error, and to the file that `VSMSGBUS_CHECK_FILE` names. Other variables
of the environment:

| variable | value |
|---|---|
| `VSMSGBUS_CHECK` | `break` stops in the debugger at each finding; `abort` ends the process at the first with exit code 3 |
| `VSMSGBUS_CHECK_GRACE` | milliseconds after the last change until masks and interfaces are compared, 5000 when not set |
| `VSMSGBUS_CHECK_SLOW` | milliseconds that a callback or a sink may take, 5000 when not set |
| `VSMSGBUS_TRACE` | a file for the record, see below |
| `VSMSGBUS_TRACE_LIMIT` | its greatest size in bytes, 64 MB when not set |

`unsigned VsMsgbusCheckFindings(const char* rule)`, which this DLL alone exports, answers how many findings of a rule there
were, or of all rules for null: also those that are not told again.

The record has every export and every callback as a span, with its thread, product, arguments and answer, and as instants the
findings, the agent's coming and going with its version, the libraries that are opened and closed, and what the agent refuses,
with its code. Texts are cut to 200 characters; data that is encrypted or decrypted is never in it. It is in the Trace Event
format, which timeline viewers open; `vsmsgbus timeline` makes a page of it: [TIMELINE.md](TIMELINE.md). Each event is in the
file at once: a crash loses at most the last one. When the file is full, the oldest events make room.

A call into memory that is gone is not made: it is answered as if the callback had thrown. An output area that is too small
gets what it has room for.
)";

// A text with what a finding gives shown as dots.
std::string Shown(std::string text) {
    for (size_t at = text.find('{'); at != std::string::npos; at = text.find('{', at)) {
        if (at + 2 < text.size() && text[at + 2] == '}') {
            text.replace(at, 3, "…");
        } else {
            ++at;
        }
    }
    // Doubles each backslash, which Markdown takes for the beginning of an escape.
    for (size_t at = text.find('\\'); at != std::string::npos; at = text.find('\\', at + 2)) {
        text.insert(at, 1, '\\');
    }
    return text;
}

std::string Section(const RuleText& rule) {
    return std::string("\n## ") + rule.name + "\n\n" + Shown(rule.what) + ": " + Shown(rule.consequence) + ". " +
           Shown(rule.remedy) + "\n\nThe mistake:\n\n```cpp\n" + rule.mistake + "\n```\n\nRight:\n\n```cpp\n" +
           rule.right + "\n```\n";
}

TEST(ChecksPage, IsWhatTheTableSays) {
    std::string page = intro;
    for (const RuleText& rule : checking::AllRules()) {
        page += Section(rule);
    }
    std::ofstream("CHECKS.md", std::ios::binary) << page;
    std::ifstream file(CHECKS_PAGE, std::ios::binary);
    const std::string present(std::istreambuf_iterator<char>(file), {});
    EXPECT_TRUE(present == page) << "what docs/CHECKS.md should be stands in CHECKS.md in the current folder";
}

TEST(ChecksPage, HasARuleOfEachNameOnce) {
    std::set<std::string> names;
    for (const RuleText& rule : checking::AllRules()) {
        EXPECT_TRUE(names.insert(rule.name).second) << rule.name;
        EXPECT_EQ(checking::FindRule(rule.name), &rule);
    }
}

}  // namespace
