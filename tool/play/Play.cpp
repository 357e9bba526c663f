#include "tool/play/Play.h"

#include <fmt/format.h>
#include <CLI/CLI.hpp>

#include <memory>

#include "tool/files/WholeFile.h"
#include "tool/play/FileWatch.h"
#include "tool/play/Playing.h"
#include "tool/play/Reports.h"
#include "tool/play/Schema.h"
#include "tool/play/player/Player.h"
#include "tool/text/Utf8.h"

namespace tool::play {

namespace {

struct Wish {
    std::string story;
    std::vector<std::string> modules;
    std::string product;
    std::string load;
    std::string unload;
    std::string trace;
    std::string junit;
    bool isChecking = false;
    bool isJson = false;
    bool isBrief = false;
    bool isWatching = false;
    bool wantsSchema = false;
    uint32_t repeat = 1;
    uint32_t plays = 0;
    std::optional<uint32_t> seed;
};

constexpr char footer[] =
    "Examples:\n"
    "  vsmsgbus play story.json MyModule.dll\n"
    "  vsmsgbus play --checking --trace record.json story.json MyModule.dll\n"
    "  vsmsgbus play --repeat 20 --seed 1 --junit result.xml story.json MyModule.dll\n"
    "  vsmsgbus play --watch story.json build/MyModule.dll\n"
    "Exit status: 0 as the story expects, 1 something else, a crash or a hang, 2 a wrong story or wrong use.";

class PlayCommand {
public:
    explicit PlayCommand(const Wish& commandLine) : wish(commandLine), printer(!wish.isBrief) {}

    ExitStatus Run() {
        if (wish.wantsSchema) {
            fmt::print("{}\n", MakeSchema().dump(1));
            return ExitStatus::Right;
        }
        if (wish.modules.empty()) {
            throw std::runtime_error("play wants a story and a module: see vsmsgbus play --help");
        }
        return wish.isWatching ? Watch() : PlayStory();
    }

private:
    std::filesystem::path StoryFile() const { return PathOf(wish.story); }

    std::vector<std::filesystem::path> Modules() const {
        std::vector<std::filesystem::path> modules;
        for (const std::string& module : wish.modules) {
            modules.push_back(PathOf(module));
        }
        return modules;
    }

    Cast MakeCast(const Story& story) const {
        Cast cast;
        cast.modules = Modules();
        for (const auto& module : cast.modules) {
            if (!std::filesystem::is_regular_file(module)) {
                throw std::runtime_error("there is no file " + Utf8(module));
            }
        }
        cast.isChecking = wish.isChecking || !wish.trace.empty() || story.NeedsCheckingBridge();
        cast.trace = PathOf(wish.trace);
        cast.product = wish.product;
        cast.loadFunction = wish.load;
        cast.unloadFunction = wish.unload;
        return cast;
    }

    ExitStatus PlayStory() {
        const Story story = Story::Read(StoryFile());
        const Cast cast = MakeCast(story);
        std::vector<RunResult> runs;
        ExitStatus status = ExitStatus::Right;
        for (uint32_t i = 0; i < wish.repeat; ++i) {
            const auto seed = wish.seed ? std::optional(*wish.seed + i) : std::nullopt;
            if (!wish.isJson) {
                printer.Say(fmt::format("{}{}{}", story.Name(),
                                        wish.repeat > 1 ? fmt::format(", {} of {}", i + 1, wish.repeat) : "",
                                        seed ? fmt::format(", seed {}", *seed) : ""),
                            Outcome::NotPlayed);
            }
            runs.push_back(Play(story, cast, seed, wish.isJson ? nullptr : &printer));
            if (!wish.isJson) {
                printer.OnOver(runs.back());
            }
            if (runs.back().Worst() != Outcome::Passed) {
                status = ExitStatus::Finding;
            }
        }
        Report(story, runs);
        return status;
    }

    void Report(const Story& story, const std::vector<RunResult>& runs) const {
        if (wish.isJson) {
            fmt::print("{}\n", MakeJson(story.Name(), runs).dump(2, ' ', false, Replace));
        }
        if (!wish.junit.empty()) {
            WriteWholeFile(PathOf(wish.junit), MakeJUnit(story.Name(), runs));
        }
    }

    // Again and again; a story that is wrong is told, and waited for.
    ExitStatus Watch() {
        auto files = Modules();
        files.push_back(StoryFile());
        FileWatch watch(files);
        ExitStatus status = ExitStatus::Right;
        for (uint32_t i = 1;; ++i) {
            try {
                status = PlayStory();
            } catch (const std::exception& failure) {
                fmt::print(stderr, "vsmsgbus: {}\n", failure.what());
                status = ExitStatus::WrongUse;
            }
            if (i == wish.plays) {
                return status;
            }
            if (!wish.isJson) {
                printer.Say("waits until the story or a module changes", Outcome::NotPlayed);
            }
            watch.WaitForChange();
        }
    }

    static constexpr auto Replace = nlohmann::json::error_handler_t::replace;

    const Wish& wish;
    Printer printer;
};

}  // namespace

void AddPlay(CLI::App& program, ExitStatus& status) {
    const auto wish = std::make_shared<Wish>();
    CLI::App* const play = program.add_subcommand(
        "play", "Hosts modules with the simulated agent, in a registry of its own, and does what a story says");
    play->add_option("story", wish->story, "The story, a JSON file: guides/PLAY.md describes it");
    play->add_option("modules", wish->modules, "The modules' files, in the order in which they are loaded");
    play->add_option("--product", wish->product, "The product of steps that name none");
    play->add_option("--load", wish->load, "The exported function by which the modules enter");
    play->add_option("--unload", wish->unload, "The exported function by which the modules leave");
    play->add_flag("--checking", wish->isChecking, "Take the checking bridge");
    play->add_option("--trace", wish->trace, "Have the checking bridge record what happens in this file");
    play->add_option("--junit", wish->junit, "Write the result to this file, as JUnit does");
    play->add_flag("--json", wish->isJson, "Print the result as JSON");
    play->add_flag("--brief", wish->isBrief, "Leave out the bridge's calls of the agent");
    play->add_option("--repeat", wish->repeat, "Play so often, each time in a new process")->check(CLI::PositiveNumber);
    play->add_option("--seed", wish->seed,
                     "Decides the order of steps that the story leaves open; the second playing "
                     "takes the next seed");
    play->add_flag("--watch", wish->isWatching, "Play again whenever a module or the story has changed");
    play->add_option("--plays", wish->plays, "With --watch: end after so many");
    play->add_flag("--schema", wish->wantsSchema, "Print the JSON schema of stories");
    play->footer(footer);
    play->callback([wish, &status] { status = PlayCommand(*wish).Run(); });
    AddPlayer(program, status);
}

}  // namespace tool::play
