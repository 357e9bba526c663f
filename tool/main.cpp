// vsmsgbus: examines a machine, plays a story with a module, judges it, and draws what happened.
#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <exception>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "VsMsgbus/Version.h"
#include "tool/ExitStatus.h"
#include "tool/doctor/Doctor.h"
#include "tool/judge/Judge.h"
#include "tool/play/Play.h"
#include "tool/text/Utf8.h"
#include "tool/timeline/Timeline.h"

namespace {

using tool::ExitStatus;

ExitStatus Run(std::vector<std::string> arguments) {
    CLI::App program("Examines a machine, plays a story with a module, judges it, and draws what happened.",
                     "vsmsgbus");
    program.set_version_flag("--version", fmt::format("vsmsgbus {}.{}.{}", VSMSGBUS_VERSION_MAJOR,
                                                      VSMSGBUS_VERSION_MINOR, VSMSGBUS_VERSION_PATCH));
    program.require_subcommand(1);
    // A word that begins with a slash is a file's name.
    program.allow_windows_style_options(false);
    program.footer("Exit status: 0 right, 1 a finding, 2 wrong use.");
    ExitStatus status = ExitStatus::Right;
    // Each folder adds its sub-command here.
    tool::AddDoctor(program, status);
    tool::play::AddPlay(program, status);
    tool::judge::AddJudge(program, status);
    tool::AddTimeline(program, status);

    // The parser takes them from behind.
    std::reverse(arguments.begin(), arguments.end());
    arguments.pop_back();
    try {
        program.parse(std::move(arguments));
    } catch (const CLI::ParseError& wrong) {
        return program.exit(wrong) == 0 ? ExitStatus::Right : ExitStatus::WrongUse;
    }
    return status;
}

}  // namespace

// The arguments are UTF-16 here; main would be given them in the system's code page.
int wmain(int count, wchar_t** words) {
    try {
        std::vector<std::string> arguments;
        for (const wchar_t* const word : std::span(words, static_cast<size_t>(count))) {
            arguments.push_back(tool::Utf8(word));
        }
        return static_cast<int>(Run(std::move(arguments)));
    } catch (const std::exception& failure) {
        fmt::print(stderr, "vsmsgbus: {}\n", failure.what());
        return static_cast<int>(ExitStatus::WrongUse);
    }
}
