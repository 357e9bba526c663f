#include "tool/timeline/Timeline.h"

#include <fmt/format.h>
#include <windows.h>
#include <CLI/CLI.hpp>

#include <filesystem>
#include <memory>
#include <optional>
#include <stdexcept>

#include "tool/files/WholeFile.h"
#include "tool/output/Progress.h"
#include "tool/output/Terminal.h"
#include "tool/text/Utf8.h"
#include "tool/timeline/Page.h"
#include "tool/timeline/Record.h"
#include "tool/timeline/Summary.h"
#include "tool/timeline/TraceReader.h"

namespace tool {

namespace {

constexpr uint16_t red = FOREGROUND_RED | FOREGROUND_INTENSITY;
constexpr uint16_t usual = FOREGROUND_RED | FOREGROUND_GREEN | FOREGROUND_BLUE;

struct TimelineOptions {
    std::string trace;
    std::string page;
    bool isForMachines = false;
};

Trace ReadTraceFile(const std::string& name) {
    const std::optional<std::string> text = ReadWholeFile(PathOf(name));
    if (!text) {
        throw std::runtime_error(name + " cannot be read");
    }
    Progress progress("reading " + name);
    try {
        return ReadTrace(*text, [&](double share) { progress.Tell(share); });
    } catch (const std::runtime_error& refused) {
        throw std::runtime_error(fmt::format("{} is no trace: {}", name, refused.what()));
    }
}

void Tell(const TimelineOptions& options, const Record& record, const Summary& summary) {
    const Terminal terminal;
    terminal.Print(fmt::format("{}: {}\n", options.page, SummaryLine(record, summary)), usual);
    if (!record.isComplete) {
        terminal.Print("The trace has no end: the process did not end in good order, or is still running.\n", usual);
    }
    if (record.brokenLine.has_value()) {
        terminal.Print(fmt::format("Line {} of the trace is broken and left out.\n", *record.brokenLine), usual);
    }
    for (const size_t index : summary.findings) {
        terminal.Print(FindingText(record, record.events[index]) + "\n", red);
    }
}

ExitStatus Run(const TimelineOptions& options) {
    if (options.page.empty() && !options.isForMachines) {
        throw std::runtime_error("timeline: -o FILE.html is missing, or --json");
    }
    std::error_code none;
    if (!options.page.empty() && std::filesystem::equivalent(PathOf(options.trace), PathOf(options.page), none)) {
        throw std::runtime_error("timeline: the page would take the place of the trace");
    }
    const Record record = MakeRecord(ReadTraceFile(options.trace));
    const Summary summary = Summarise(record);
    if (!options.page.empty()) {
        WriteWholeFile(PathOf(options.page), MakePage(Utf8(PathOf(options.trace).filename()), record, summary));
    }
    if (options.isForMachines) {
        fmt::print("{}\n", SummaryForMachines(record, summary));
    } else {
        Tell(options, record, summary);
    }
    return summary.findings.empty() ? ExitStatus::Right : ExitStatus::Finding;
}

}  // namespace

void AddTimeline(CLI::App& program, ExitStatus& status) {
    CLI::App* const command =
        program.add_subcommand("timeline", "Draws a record of the checking bridge as a page for the browser.");
    const auto options = std::make_shared<TimelineOptions>();
    command->add_option("TRACE", options->trace, "the record: what VSMSGBUS_TRACE named")->required();
    command->add_option("-o,--output", options->page, "the page to write, such as trace.html");
    command->add_flag("--json", options->isForMachines, "print a summary for machines; -o may then be left out");
    command->footer(
        "The page needs nothing else, also no network. The record's newest events are in it even when the process\n"
        "crashed.\n\n"
        "Exit status: 0 right, 1 when the record has findings of the checking bridge, 2 when it is no trace.\n\n"
        "Examples:\n"
        "  set VSMSGBUS_TRACE=C:\\logs\\trace.json    (then run the program with checking\\VsMsgbus.dll)\n"
        "  vsmsgbus timeline C:\\logs\\trace.json -o trace.html\n"
        "  vsmsgbus timeline trace.json --json\n");
    command->callback([options, &status] { status = Run(*options); });
}

}  // namespace tool
