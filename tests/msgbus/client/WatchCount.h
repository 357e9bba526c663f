#pragma once

#include <windows.h>

#include <atomic>
#include <string>
#include <vector>

#include "support/LineLog.h"
#include "support/SystemFunction.h"

// Knows how often a watcher's thread has asked to be told of changes in the registry: what is written after the first
// time does not go by unseen. One at a time.
class WatchCount {
public:
    WatchCount() { current = this; }
    ~WatchCount() { current = nullptr; }

    bool WaitFor(size_t count) const { return asked.WaitForSize(count); }
    // The parameters of each request, as "<subtree> <filter> <asynchronous>".
    std::vector<std::string> Asked() const { return asked.Lines(); }
    // From now on asking is answered with this error; 0 lets the system answer.
    void AnswerWith(LSTATUS error) { answer = error; }

private:
    static LSTATUS WINAPI Ask(HKEY key, WINBOOL subtree, DWORD filter, HANDLE event, WINBOOL asynchronous) {
        const LSTATUS error = current->answer != ERROR_SUCCESS
                                  ? current->answer.load()
                                  : current->function.original(key, subtree, filter, event, asynchronous);
        current->asked.Add(std::to_string(subtree) + " " + std::to_string(filter) + " " + std::to_string(asynchronous));
        return error;
    }

    static inline WatchCount* current = nullptr;

    LineLog asked;
    std::atomic<LSTATUS> answer = ERROR_SUCCESS;
    SystemFunction<decltype(::RegNotifyChangeKeyValue)> function{&::RegNotifyChangeKeyValue, &Ask};
};
