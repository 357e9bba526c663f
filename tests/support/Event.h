#pragma once

#include <windows.h>

#include <chrono>

#include "support/LineLog.h"

// An event that one thread signals and another waits for. It stays signalled.
class Event {
public:
    Event() : handle(::CreateEventW(nullptr, TRUE, FALSE, nullptr)) {}
    ~Event() { ::CloseHandle(handle); }
    Event(const Event&) = delete;
    Event& operator=(const Event&) = delete;

    void Set() { ::SetEvent(handle); }
    bool Wait(std::chrono::milliseconds limit = soon) const {
        return ::WaitForSingleObject(handle, static_cast<DWORD>(limit.count())) == WAIT_OBJECT_0;
    }
    bool IsSet() const { return Wait(std::chrono::milliseconds(0)); }

private:
    HANDLE handle;
};
