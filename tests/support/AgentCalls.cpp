#include "support/AgentCalls.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>
#include <utility>

std::vector<std::string> AgentCalls() {
    std::vector<std::string> functions;
    for (size_t i = 0; i < ny_sim_call_count(nullptr); ++i) {
        ny_sim_call_t call{};
        EXPECT_EQ(ny_sim_get_call(i, &call), NY_OK);
        functions.push_back(call.function);
    }
    return functions;
}

// The agent runs a hook with no lock held: a call that began before the hook was removed may come to it afterwards. All
// gates therefore stay.
class AgentHook::Gate {
public:
    explicit Gate(std::function<void()> whatToRun) : run(std::move(whatToRun)) {}

    static Gate& Make(std::function<void()> whatToRun) {
        static std::mutex& mutexOfAll = *new std::mutex;
        static std::deque<Gate>& all = *new std::deque<Gate>;
        const std::lock_guard lock(mutexOfAll);
        return all.emplace_back(std::move(whatToRun));
    }

    static void Run(const char* /*function*/, void* gate) { static_cast<Gate*>(gate)->Run(); }

    // Returns when no other thread is inside. A hook may end inside its own code.
    void Close() {
        std::unique_lock lock(mutex);
        isClosed = true;
        left.wait(lock, [this] {
            return std::all_of(threadsInside.begin(), threadsInside.end(),
                               [](std::thread::id thread) { return thread == std::this_thread::get_id(); });
        });
    }

private:
    void Run() {
        if (Enter()) {
            run();
            Leave();
        }
    }

    bool Enter() {
        const std::lock_guard lock(mutex);
        if (!isClosed) {
            threadsInside.push_back(std::this_thread::get_id());
        }
        return !isClosed;
    }

    void Leave() {
        const std::lock_guard lock(mutex);
        threadsInside.erase(std::find(threadsInside.begin(), threadsInside.end(), std::this_thread::get_id()));
        left.notify_all();
    }

    const std::function<void()> run;
    std::mutex mutex;
    std::condition_variable left;
    std::vector<std::thread::id> threadsInside;
    bool isClosed = false;
};

AgentHook::AgentHook(const char* hookedFunction, std::function<void()> whatToRun)
    : function(hookedFunction), gate(Gate::Make(std::move(whatToRun))) {
    EXPECT_EQ(ny_sim_set_hook(function, &Gate::Run, &gate), NY_OK);
}

AgentHook::~AgentHook() {
    ny_sim_set_hook(function, nullptr, nullptr);
    gate.Close();
}
