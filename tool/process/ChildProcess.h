#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace tool {

// This program once more, with other arguments. The child is given a text on its standard input and writes lines into a
// pipe of its own. Its standard output goes to this process's standard error, or nowhere. The child ends when this
// process does.
class ChildProcess {
public:
    // `arguments` are UTF-8, without the program's name; behind them the child gets the number of the handle to which
    // it writes its lines. Throws std::system_error when the child cannot be started.
    ChildProcess(const std::vector<std::string>& arguments, const std::string& input, bool isQuiet);
    // Terminates the child unless it has ended.
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    enum class Read { Line, End, Timeout };
    // The next line, without its end. End: no more will come, because the child has ended or closed its pipe.
    Read NextLine(std::chrono::milliseconds limit, std::string& line);
    // The child's exit status, or nothing when it has not ended within the limit.
    std::optional<uint32_t> WaitForExit(std::chrono::milliseconds limit) const;
    // Ends the child now, and waits for its end.
    void Terminate() const;

private:
    void ReadLines();

    void* job = nullptr;
    void* process = nullptr;
    void* lineSource = nullptr;
    std::mutex mutex;
    std::condition_variable changed;
    std::deque<std::string> lines;
    bool hasEnded = false;
    std::thread reader;
};

}  // namespace tool
