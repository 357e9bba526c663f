#pragma once

#include <windows.h>

#include <atomic>
#include <string>

#include "msgbus/client/NyClientNotifier.h"
#include "support/LineLog.h"
#include "support/SystemFunction.h"

// Keeps the time-outs of one watcher's waits for a change. One at a time; outlives the watcher's thread.
class Waits {
public:
    explicit Waits(const NyClientNotifier& notifier) : stopEvent(notifier.stopEvent.get()) { current = this; }

    LineLog log;
    std::atomic<bool> isFailing = false;    // the next wait, once
    std::atomic<bool> isTimingOut = false;  // the next wait without end, once

private:
    static DWORD WINAPI Wait(DWORD count, const HANDLE* handles, WINBOOL all, DWORD milliseconds) {
        const bool isOurs = count == 2 && handles[1] == current->stopEvent && all == FALSE;
        if (isOurs) {
            current->log.Add(milliseconds == INFINITE ? "infinite" : std::to_string(milliseconds));
        }
        if (isOurs && current->isFailing.exchange(false)) {
            return WAIT_FAILED;
        }
        if (isOurs && milliseconds == INFINITE && current->isTimingOut.exchange(false)) {
            return WAIT_TIMEOUT;
        }
        return current->function.original(count, handles, all, milliseconds);
    }

    static inline Waits* current = nullptr;
    HANDLE stopEvent = nullptr;
    SystemFunction<decltype(::WaitForMultipleObjects)> function{&::WaitForMultipleObjects, &Wait};
};

// Keeps what the registry is asked for, as "<key> <access>" and "<value> <size>". One at a time.
class Questions {
public:
    Questions() { current = this; }

    LineLog asked;

private:
    static LSTATUS WINAPI Open(HKEY parent, const char* path, DWORD options, REGSAM access, HKEY* key) {
        current->asked.Add((parent == HKEY_LOCAL_MACHINE ? "HKLM " : "? ") + std::string(path) + " " +
                           std::to_string(access));
        return current->opening.original(parent, path, options, access, key);
    }
    static LSTATUS WINAPI Query(HKEY key, const char* name, DWORD* reserved, DWORD* type, BYTE* data, DWORD* size) {
        current->asked.Add(std::string(name) + " " + std::to_string(*size));
        return current->querying.original(key, name, reserved, type, data, size);
    }

    static inline Questions* current = nullptr;
    SystemFunction<decltype(::RegOpenKeyExA)> opening{&::RegOpenKeyExA, &Open};
    SystemFunction<decltype(::RegQueryValueExA)> querying{&::RegQueryValueExA, &Query};
};

// While it lives, the system refuses a reference to a library by an address in it.
class NoLibraryReferences {
private:
    static WINBOOL WINAPI Refuse(DWORD, const char*, HMODULE*) { return FALSE; }

    SystemFunction<decltype(::GetModuleHandleExA)> asking{&::GetModuleHandleExA, &Refuse};
};

// While it lives, no thread can be created.
class NoThreads {
private:
    static HANDLE WINAPI Create(SECURITY_ATTRIBUTES*, SIZE_T, LPTHREAD_START_ROUTINE, void*, DWORD, DWORD*) {
        return nullptr;
    }

    SystemFunction<decltype(::CreateThread)> creating{&::CreateThread, &Create};
};
