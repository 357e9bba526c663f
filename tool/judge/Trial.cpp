#include "tool/judge/Trial.h"

#include <algorithm>
#include <utility>

#include "tool/judge/Steps.h"

namespace tool::judge {

namespace {

constexpr char collecting[] = "ny_property_bag_add_property";
constexpr int invalid = 3;
// The bridge refuses the module's entry, because the agent does; the player has the module leave nevertheless.
const std::set<std::string> ofRefusedEntry{"ENTRY-FAILED", "EXIT-UNKNOWN", "EXIT-OTHER-INSTANCE", "REMOVE-UNKNOWN"};

// A call from the agent that is under way when something happens: the service, the step that begins it, and the
// function of the agent's in which it is held up, inside the module's callback or just before it.
struct Held {
    const char* service;
    const char* function;
};
constexpr Held heldCalls[] = {
    {"properties", collecting}, {"policies", "ny_policy_uri_add_ref"}, {"tasks", "ny_task.get_id"}};

class Maker {
public:
    Maker(const Profile& modules, uint32_t cycleCount, bool isBrief)
        : profile(modules), cycles(cycleCount), isShort(isBrief) {}

    std::vector<Trial> Run() {
        AddComings();
        AddHeldCalls();
        AddLeavings();
        AddRefusals();
        AddManners();
        AddFailingCalls();
        AddMemoryFaults();
        AddCycles();
        return std::move(trials);
    }

private:
    Trial& Add(std::string name, std::string purpose, Steps steps) {
        Trial trial;
        trial.name = std::move(name);
        trial.purpose = std::move(purpose);
        trial.story = MakeStory(trial.name, std::move(steps));
        trials.push_back(std::move(trial));
        return trials.back();
    }

    // Every service of every product is used.
    Steps Use() const { return UseAll(profile); }
    Steps WaitForAll() const {
        Steps steps;
        for (const auto& [product, services] : profile.products) {
            for (const std::string& service : services) {
                steps.Do("wait until registered").With("product", product).With("service", service);
            }
        }
        return steps;
    }

    static Steps EnterInstalled() {
        Steps steps;
        steps.Do("install");
        steps.Do("load");
        return steps;
    }
    static Steps Leave() {
        Steps steps;
        steps.Do("unload");
        steps.Do("expect nothing left");
        return steps;
    }

    // --- The agent comes and goes

    void AddComings() {
        Steps absent;
        absent.Do("load");
        absent.Do("unload");
        absent.Do("expect nothing left");
        Add("agent absent", "The module enters and leaves on a machine without an agent.", absent);

        Steps late;
        late.Do("make agent key");
        late.Do("load");
        late.Do("install").With("version", "5.6.0").With("build", "older");
        Add("agent late", "The agent is installed after the module has entered.",
            late + WaitForAll() + Use() + Leave());

        Steps upgrade;
        upgrade.Do("upgrade").With("version", "5.8.0");
        Add("agent upgraded", "The agent is upgraded under the module.",
            EnterInstalled() + WaitForAll() + Use() + upgrade + WaitForAll() + Use() + Leave());

        Steps back;
        back.Do("remove");
        back.Do("make agent key");
        back.Do("install").With("version", "5.9.0");
        Steps gone = WaitForAll();
        for (auto& step : gone.all) {
            step["do"] = "wait until unregistered";
        }
        Steps removed;
        removed.Do("remove");
        Add("agent removed and back", "The agent is removed under the module, and installed again.",
            EnterInstalled() + Use() + removed + gone + back + WaitForAll() + Use() + Leave());
        Trial& lacking =
            Add("agent lacks functions", "The agent is of a build that lacks some functions.", LackingSteps());
        lacking.expectedRules = ofRefusedEntry;
    }

    static Steps LackingSteps() {
        Steps steps;
        steps.Do("install").With("build", "lacking");
        steps.Do("load").With("answer", nullptr);
        steps.Do("unload").With("answer", nullptr);
        return steps;
    }

    // --- The agent comes, goes, or the module leaves, while a call is under way

    void AddHeldCalls() {
        for (const Held& held : heldCalls) {
            for (const auto& [product, services] : profile.products) {
                if (services.count(held.service) != 0) {
                    AddHeld(held, product);
                }
            }
        }
    }

    void AddHeld(const Held& held, const std::string& product) {
        const std::string whose = std::string(held.service) + (profile.products.size() > 1 ? " of " + product : "");
        Steps begin = EnterInstalled() + WaitForAll() + Prepare(profile);
        begin.Do("block").With("function", held.function);
        begin += Request(held.service, product, "held", Answers::Any);
        begin.Do("wait until blocked").With("function", held.function);
        Steps go;
        go.Do("unblock").With("function", held.function);
        Steps end = go;
        end.Do("await").With("request", "held");
        Steps upgrade;
        upgrade.Do("upgrade").With("version", "5.8.0");
        Add("upgraded while asked for " + whose, "The agent is upgraded while a call of the module is under way.",
            begin + upgrade + end + WaitForAll() + Use() + Leave());
        Steps remove;
        remove.Do("remove");
        Add("removed while asked for " + whose, "The agent is removed while a call of the module is under way.",
            begin + remove + end + Leave());
        if (profile.leaveFunctions.size() == 1 && !profile.leaveFunctions.begin()->second.empty()) {
            Steps leave;
            leave.Do("call").With("function", profile.leaveFunctions.begin()->second).With("as", "leaving");
            leave.Do("pause").With("milliseconds", 100);
            Steps out = go;
            out.Do("await").With("request", "leaving").With("within", 40000);
            out.Do("await").With("request", "held").With("within", 40000);
            out.Do("unload").With("function", "");
            out.Do("expect nothing left");
            Add("unloaded while asked for " + whose, "The module leaves while a call of it is under way.",
                begin + leave + out);
        }
    }

    // --- The module leaves at every stage

    void AddLeavings() {
        Steps coming;
        coming.Do("make agent key");
        coming.Do("load");
        coming.Do("install");
        Add("unloaded while the agent comes", "The module leaves as soon as the agent is installed.", coming + Leave());
        Steps upgrade;
        upgrade.Do("upgrade").With("version", "5.8.0");
        Add("unloaded while the agent is upgraded", "The module leaves as soon as the agent is upgraded.",
            EnterInstalled() + WaitForAll() + upgrade + Leave());
        Steps remove;
        remove.Do("remove");
        Add("unloaded while the agent goes", "The module leaves as soon as the agent is removed.",
            EnterInstalled() + WaitForAll() + remove + Leave());
        Add("unloaded at once", "The module leaves as soon as it has entered.", EnterInstalled() + Leave());
        Steps twice = EnterInstalled() + WaitForAll() + Use();
        twice.Do("unload");
        twice.Do("load");
        Add("loaded twice", "The module leaves, is unloaded, and comes again.", twice + WaitForAll() + Use() + Leave());
    }

    // --- The agent refuses

    void AddRefusals() {
        for (const char* const function :
             {"ny_client_handler_create", "ny_client_handler_start", "ny_property_register_provider_callback",
              "ny_policy_register_notification_callback", "ny_scheduler_register_task_callbacks",
              "ny_updater_register_callbacks"}) {
            if (profile.enterCalls.count(function) == 0) {
                continue;
            }
            Steps steps;
            steps.Do("fail").With("function", function).With("code", invalid).With("always", true);
            Steps leave;
            leave.Do("unload").With("answer", nullptr);
            Steps enter;
            enter.Do("install");
            enter.Do("load").With("answer", nullptr);
            Trial& trial = Add(std::string("refused: ") + function,
                               std::string("The agent refuses every call of ") + function + '.', steps + enter + leave);
            trial.expectedRules = ofRefusedEntry;
        }
    }

    // --- The agent is slow, and calls from many threads

    void AddManners() {
        Steps slow = EnterInstalled() + WaitForAll();
        for (const Held& held : heldCalls) {
            if (profile.useCalls.count(held.function) != 0) {
                slow.Do("slow").With("function", held.function).With("milliseconds", 20);
            }
        }
        Add("slow agent", "The agent takes long for what the module's callbacks call.", slow + Use() + Leave());

        constexpr int threads = 8;
        Steps many = EnterInstalled() + WaitForAll() + Prepare(profile);
        Steps wait;
        for (const auto& [product, services] : profile.products) {
            for (const std::string& service : services) {
                for (int i = 0; i < threads; ++i) {
                    const std::string name = service + ' ' + product + ' ' + std::to_string(i);
                    many += Request(service, product, name, Answers::Successes, i);
                    wait.Do("await").With("request", name);
                }
            }
        }
        Add("eight threads", "The agent calls each service from eight threads at a time.", many + wait + Leave());
    }

    // --- The agent's calls fail, one after the other

    void AddFailingCalls() {
        size_t index = 0;
        const auto isTaken = [&] {
            constexpr size_t each = 8;
            return !isShort || index++ % each == 0;
        };
        for (const std::string& function : profile.enterCalls) {
            if (isTaken()) {
                AddFailing(function, "enters", {}, true);
            }
        }
        for (const std::string& function : profile.useCalls) {
            // A release that fails leaves a handle behind, which is the agent's mistake and not the module's.
            if (function.find("release") == std::string::npos && isTaken()) {
                AddFailing(function, "is asked", Prepare(profile) + RequestAll(profile), false);
            }
        }
        for (const std::string& function : profile.leaveCalls) {
            if (profile.useCalls.count(function) == 0 && isTaken()) {
                AddFailing(function, "leaves", {}, false);
            }
        }
    }

    void AddFailing(const std::string& function, const std::string& when, Steps use, bool isBeforeLoad) {
        constexpr int outOfMemory = 4;
        Steps fail;
        fail.Do("fail").With("function", function).With("code", outOfMemory);
        Steps install;
        install.Do("install");
        Steps load;
        load.Do("load").With("answer", nullptr);
        Steps leave;
        leave.Do(when == "leaves" ? "unload" : "clear faults");
        leave.Do(when == "leaves" ? "clear faults" : "unload");
        leave.all[when == "leaves" ? 0 : 1]["answer"] = nullptr;
        Trial& trial =
            Add("fails as it " + when + ": " + function, "A call of " + function + " fails as the module " + when + '.',
                isBeforeLoad ? install + fail + load + leave
                             : install + load + WaitForAll() + fail + std::move(use) + leave);
        trial.expectedRules = ofRefusedEntry;
        // By throwing, a callback tells the agent that it has failed.
        trial.expectedRules.insert("CALLBACK-THREW");
    }

    // --- Memory runs out in the bridge

    void AddMemoryFaults() {
        const uint32_t most = isShort ? 12 : 60;
        Steps enter;
        enter.Do("install");
        for (uint32_t nth = 1; nth <= most; ++nth) {
            AddMemoryFault(enter, nth, false);
            enter.Do("load").With("answer", nullptr);
            enter.Do("clear faults");
            enter.Do("unload").With("answer", nullptr).With("keep", true);
        }
        Trial& entering = Add("bridge out of memory as it enters",
                              "Each of the bridge's first " + std::to_string(most) + " allocations fails.", enter);
        // The checking bridge cannot note what it has no memory for, and would take it for a mistake later.
        entering.isChecking = false;

        Steps use = EnterInstalled() + WaitForAll() + Prepare(profile);
        for (const bool isAlways : {false, true}) {
            for (uint32_t nth = 1; nth <= most; nth += isAlways ? 5 : 1) {
                AddMemoryFault(use, nth, isAlways);
                use += RequestAll(profile);
                use.Do("clear faults");
            }
        }
        Trial& asking = Add("bridge out of memory as it is asked",
                            "While each service is asked, each of the bridge's first " + std::to_string(most) +
                                " allocations fails, alone and with all later ones; afterwards all is as before.",
                            use + Use() + Leave());
        asking.isChecking = false;
    }

    static void AddMemoryFault(Steps& steps, uint32_t nth, bool isAlways) {
        steps.Do("fail memory").With("nth", nth).With("always", isAlways);
    }

    // --- Again and again

    void AddCycles() {
        Steps steps;
        steps.Do("install");
        constexpr uint32_t perCycle = 100;
        steps.Do("cycle").With("times", cycles).With("within", 20000 + cycles * perCycle);
        Trial& trial = Add("enters and leaves again and again",
                           "Memory, handles and threads after " + std::to_string(cycles) + " times.", steps);
        // The checking bridge keeps what it has seen.
        trial.isChecking = false;
    }

    const Profile& profile;
    const uint32_t cycles;
    const bool isShort;
    std::vector<Trial> trials;
};

}  // namespace

Trial FirstTrial() {
    Trial trial;
    trial.name = "enters and leaves";
    trial.purpose = "The module enters, registers with the agent, and leaves.";
    Steps steps;
    steps.Do("install");
    steps.Do("load");
    steps.Do("tell products");
    steps.Do("unload");
    steps.Do("expect nothing left");
    trial.story = MakeStory(trial.name, std::move(steps));
    return trial;
}

Trial UseTrial(const Profile& profile) {
    Trial trial;
    trial.name = "is asked";
    trial.purpose = "The agent uses every service of the module.";
    Steps steps;
    steps.Do("install");
    steps.Do("load");
    steps.Do("tell products");
    steps += UseAll(profile);
    // Masks and interfaces are compared a while after the last change.
    steps.Do("pause").With("milliseconds", 700);
    steps.Do("unload");
    steps.Do("expect nothing left");
    trial.story = MakeStory(trial.name, std::move(steps));
    return trial;
}

std::vector<Trial> MakeTrials(const Profile& profile, uint32_t cycles, bool isShort) {
    return Maker(profile, cycles, isShort).Run();
}

}  // namespace tool::judge
