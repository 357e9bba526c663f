#include "tool/play/player/Player.h"

#include <windows.h>
#include <CLI/CLI.hpp>

#include <cstdint>
#include <iostream>
#include <memory>
#include <stdexcept>

#include "tool/play/player/Channel.h"
#include "tool/play/player/Stage.h"
#include "tool/play/player/Steps.h"
#include "tool/text/Utf8.h"

namespace tool::play {

namespace {

using vsmsgbus::testing::Failure;
using Json = nlohmann::json;
using Clock = std::chrono::steady_clock;

// Loads the library by its full path: a later load of that name then gives this one. Libraries that it needs itself,
// such as LogLib.dll, stand beside this program.
HMODULE LoadFile(const Json& path) {
    const auto file = PathOf(path.get<std::string>());
    HMODULE const library = ::LoadLibraryW(file.c_str());
    if (library == nullptr) {
        throw std::runtime_error(Utf8(file) + " cannot be loaded: error " + std::to_string(::GetLastError()));
    }
    return library;
}

StepTable AllSteps() {
    StepTable all;
    for (StepTable some : {MachineSteps(), ModuleSteps(), RequestSteps(), TaskSteps(), WaitSteps(), ExpectSteps()}) {
        all.merge(some);
    }
    return all;
}

int64_t MillisecondsSince(Clock::time_point begin) {
    return std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - begin).count();
}

void DemandTime(const Json& step, int64_t milliseconds) {
    const std::string took = ", and has taken " + std::to_string(milliseconds) + " ms";
    if (const uint32_t most = step.at("within"); milliseconds > most) {
        throw Failure("it was to take " + std::to_string(most) + " ms at most" + took);
    }
    if (const uint32_t least = step.value("atLeast", 0U); milliseconds < least) {
        throw Failure("it was to take " + std::to_string(least) + " ms at least" + took);
    }
}

// Whether the step went well.
bool Play(Stage& stage, const StepTable& table, const Json& step) {
    Json end{{"event", "end"}};
    const Clock::time_point begin = Clock::now();
    try {
        table.at(step.at("do"))(stage, step);
        end["milliseconds"] = MillisecondsSince(begin);
        DemandTime(step, end["milliseconds"]);
    } catch (const Hung& hung) {
        end["failure"] = hung.what();
        end["isHung"] = true;
    } catch (const std::exception& failure) {
        end["failure"] = failure.what();
    }
    end.emplace("milliseconds", MillisecondsSince(begin));
    stage.TellCalls();
    stage.Send(end);
    return !end.contains("failure");
}

// Whether all went well.
bool PlayAll(Stage& stage, const Json& steps) {
    const StepTable table = AllSteps();
    for (size_t i = 0; i < steps.size(); ++i) {
        stage.Send({{"event", "begin"}, {"step", i}});
        if (!Play(stage, table, steps[i])) {
            return false;
        }
    }
    return true;
}

void Run(uint64_t pipe) {
    Channel channel(reinterpret_cast<HANDLE>(static_cast<uintptr_t>(pipe)));
    channel.TellOfCrashes();
    const Json plan = Json::parse(std::cin);
    LoadFile(plan.at("simulator"));
    LoadFile(plan.at("setup"));
    HMODULE const bridge = LoadFile(plan.at("bridge"));
    Stage stage(plan, bridge, channel);
    if (!PlayAll(stage, plan.at("steps"))) {
        // Threads may be left in the module, or in the agent.
        channel.Send({{"event", "over"}});
        ::TerminateProcess(::GetCurrentProcess(), 0);
    }
    stage.AllHolds().UnblockAll();
    channel.Send({{"event", "over"}});
}

}  // namespace

void AddPlayer(CLI::App& program, ExitStatus& status) {
    const auto pipe = std::make_shared<uint64_t>(0);
    CLI::App* const player = program.add_subcommand("player", "Plays one story in this process");
    player->group("");
    player->add_option("pipe", *pipe)->required();
    player->callback([pipe, &status] {
        Run(*pipe);
        status = ExitStatus::Right;
    });
}

}  // namespace tool::play
