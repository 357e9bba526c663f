// The modules are loaded, called and unloaded.
#include <windows.h>

#include <future>

#include "tool/play/player/Level.h"
#include "tool/play/player/Steps.h"

namespace tool::play {

namespace {

using vsmsgbus::testing::Failure;
using Json = nlohmann::json;

void DemandAnswer(const std::string& function, const Json& step, bool answer) {
    const Json wanted = step.value("answer", Json(true));
    if (!wanted.is_null() && wanted != answer) {
        throw Failure(function + " was to answer " + wanted.dump() + ", and has answered " +
                      (answer ? "true" : "false"));
    }
}

void CallAndLook(Stage& stage, ModuleFile& module, const std::string& function, const Json& step) {
    stage.Tell("player",
               "calls " + function + " of " + module.Name() + " on thread " + std::to_string(::GetCurrentThreadId()));
    const bool answer = module.Call(function, &Stage::SayTo, &stage);
    stage.Tell("module", function + " answers " + (answer ? "true" : "false"));
    DemandAnswer(function, step, answer);
}

// The step's function, the story's, or the one whose name ends like that; empty when there is none.
std::string FunctionOf(const Stage& stage, const ModuleFile& module, const Json& step, const std::string& ending) {
    if (step.contains("function")) {
        return step.at("function");
    }
    const std::string ofStory = stage.FunctionFor(ending);
    return ofStory.empty() ? module.FindFunction(ending) : ofStory;
}

void Load(Stage& stage, const Json& step) {
    for (ModuleFile* const module : stage.ModulesOf(step)) {
        if (!module->IsLoaded()) {
            module->Load();
            stage.Tell("player", "has loaded " + module->Name());
        }
        const std::string function = FunctionOf(stage, *module, step, "load");
        stage.Send({{"event", "fact"},
                    {"load", module->Name()},
                    {"function", FunctionOf(stage, *module, Json::object(), "unload")}});
        if (function.empty()) {
            stage.Tell("player", module->Name() + " has no function whose name ends with Load: none is called");
        } else {
            CallAndLook(stage, *module, function, step);
        }
    }
}

// The last one that came is the first one that goes.
void Unload(Stage& stage, const Json& step) {
    const std::vector<ModuleFile*> modules = stage.ModulesOf(step);
    for (auto module = modules.rbegin(); module != modules.rend(); ++module) {
        const std::string function = FunctionOf(stage, **module, step, "unload");
        if (!function.empty()) {
            CallAndLook(stage, **module, function, step);
        }
        if (!step.value("keep", false)) {
            (*module)->Free();
            stage.Tell("player", "has unloaded " + (*module)->Name());
        }
    }
}

// --- Again and again

void Demand(const char* what, const char* member, const Json& step, int64_t otherwise, int64_t before, int64_t after) {
    const int64_t allowed = step.value(member, otherwise);
    if (after - before > allowed) {
        throw Failure(std::string("after so many times the process has ") + std::to_string(after - before) + ' ' +
                      what + " more than before, " + std::to_string(allowed) + " are allowed (" +
                      std::to_string(before) + ", then " + std::to_string(after) + ")");
    }
}

// Drops the module's lines, because memory that keeps them would be measured.
void HearNothing(const char* /*actor*/, const char* /*line*/, void* /*userData*/) {}

void CallInCycle(const Stage& stage, const ModuleFile& module, const char* ending, uint32_t time) {
    const std::string function = FunctionOf(stage, module, Json::object(), ending);
    if (!function.empty() && !module.Call(function, &HearNothing, nullptr)) {
        throw Failure(function + " was to answer true, and has answered false, the " + std::to_string(time) + ". time");
    }
}

void EnterAndLeave(Stage& stage, const std::vector<ModuleFile*>& modules, uint32_t times) {
    for (uint32_t i = 1; i <= times; ++i) {
        for (const ModuleFile* const module : modules) {
            CallInCycle(stage, *module, "load", i);
        }
        for (auto module = modules.rbegin(); module != modules.rend(); ++module) {
            CallInCycle(stage, **module, "unload", i);
        }
        stage.ForgetCallsSilently();
    }
}

void Cycle(Stage& stage, const Json& step) {
    const std::vector<ModuleFile*> modules = stage.ModulesOf(step);
    const uint32_t times = step.at("times");
    for (ModuleFile* const module : modules) {
        module->Load();
    }
    // The first rounds make what is made only once in a process, before the level is measured.
    EnterAndLeave(stage, modules, times / 10 + 1);
    const Level before = MeasureLevel();
    EnterAndLeave(stage, modules, times);
    const Level after = MeasureLevel();
    for (ModuleFile* const module : modules) {
        module->Free();
    }
    stage.Tell("player", "has had them enter and leave " + std::to_string(times) + " times; bytes in heaps " +
                             std::to_string(before.heapBytes) + ", then " + std::to_string(after.heapBytes) +
                             "; handles " + std::to_string(before.handles) + ", then " + std::to_string(after.handles) +
                             "; threads " + std::to_string(before.threads) + ", then " + std::to_string(after.threads));
    Demand("threads", "threads", step, 4, before.threads, after.threads);
    Demand("handles", "handles", step, 16, before.handles, after.handles);
    constexpr int64_t usualBytes = 16384;
    Demand("bytes in its heaps", "bytes", step, usualBytes, before.heapBytes, after.heapBytes);
}

// A call of the module's on a thread of its own.
class ModuleCall : public Request {
public:
    ModuleCall(Stage& stage, const ModuleFile& module, std::string functionName) : function(std::move(functionName)) {
        std::packaged_task<bool()> task(
            [&stage, &module, name = function] { return module.Call(name, &Stage::SayTo, &stage); });
        answer = task.get_future();
        thread = std::thread(std::move(task));
        threadId = ::GetThreadId(reinterpret_cast<HANDLE>(thread.native_handle()));
    }
    ~ModuleCall() override { thread.join(); }

    uint32_t Thread() const override { return threadId; }
    bool IsAnsweredWithin(std::chrono::milliseconds limit) override {
        return answer.wait_for(limit) == std::future_status::ready;
    }
    void Look(Stage& stage, const Json& step) override {
        const bool isTrue = answer.get();
        stage.Tell("module", function + " answers " + (isTrue ? "true" : "false"));
        DemandAnswer(function, step, isTrue);
    }

private:
    const std::string function;
    std::future<bool> answer;
    std::thread thread;
    uint32_t threadId = 0;
};

void Call(Stage& stage, const Json& step) {
    const std::string function = step.at("function");
    const std::vector<ModuleFile*> modules = stage.ModulesOf(step);
    if (!step.contains("as")) {
        for (ModuleFile* const module : modules) {
            CallAndLook(stage, *module, function, step);
        }
        return;
    }
    if (modules.size() != 1) {
        throw Failure("there are several modules: say which with \"module\"");
    }
    stage.Tell("player", "calls " + function + " of " + modules.front()->Name() + " on a thread of its own");
    stage.Finish(step, std::make_unique<ModuleCall>(stage, *modules.front(), function));
}

}  // namespace

StepTable ModuleSteps() {
    return {{"load", &Load}, {"unload", &Unload}, {"call", &Call}, {"cycle", &Cycle}};
}

}  // namespace tool::play
