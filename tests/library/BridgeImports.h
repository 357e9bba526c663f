#pragma once

#include <windows.h>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <map>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "library/LoadedBridge.h"
#include "support/Event.h"
#include "support/ModuleImports.h"
#include "support/SystemFunction.h"

// The calls that the bridge's own code makes of the system, replaced and counted: the threads that it creates, how they
// sleep, and the handles that it takes and gives back. A sleep of fifteen seconds is over at once. One at a time;
// outlives the bridge's threads.
class BridgeImports {
public:
    BridgeImports() {
        current = this;
        const std::map<std::string, void*> replacements = {
            {"WaitForSingleObject", reinterpret_cast<void*>(&WaitForOne)},
            {"WaitForMultipleObjects", reinterpret_cast<void*>(&WaitForSeveral)},
            {"SleepConditionVariableSRW", reinterpret_cast<void*>(&WaitForCondition)},
            {"Sleep", reinterpret_cast<void*>(&Pause)},
            {"CreateThread", reinterpret_cast<void*>(&Create)},
            {"CreateEventA", reinterpret_cast<void*>(&CreateOneEvent)},
            {"RegOpenKeyExA", reinterpret_cast<void*>(&OpenKey)},
            {"CloseHandle", reinterpret_cast<void*>(&CloseOne)},
            {"RegCloseKey", reinterpret_cast<void*>(&CloseKey)},
        };
        for (const ModuleImport& import : ImportsOf(LoadedBridge::fileName)) {
            const auto replacement = replacements.find(import.function);
            if (replacement != replacements.end()) {
                replaced.emplace_back(import.slot, *import.slot);
                SetImport(import.slot, replacement->second);
            }
        }
    }
    ~BridgeImports() {
        for (const auto& [slot, original] : replaced) {
            SetImport(slot, original);
        }
    }
    BridgeImports(const BridgeImports&) = delete;
    BridgeImports& operator=(const BridgeImports&) = delete;

    // Waits until one of its threads sleeps without a limit.
    bool WaitUntilOneSleepsForEver() const { return sleepsForEver.Wait(); }
    // Whether a sleep ends within that time.
    bool WakesUpWithin(std::chrono::milliseconds limit) {
        std::unique_lock guard(mutex);
        return wokenUp.wait_for(guard, limit, [this, before = wakeUps] { return wakeUps != before; });
    }

    // How long its threads sleep that do so now, in milliseconds.
    std::vector<DWORD> Sleeps() {
        const std::lock_guard guard(mutex);
        std::vector<DWORD> limits;
        for (const auto& [thread, limit] : sleeps) {
            limits.push_back(limit);
        }
        return limits;
    }
    size_t ThreadsCreated() {
        const std::lock_guard guard(mutex);
        return threadsCreated;
    }
    // The kinds of the handles that the bridge has, in alphabetical order.
    std::vector<std::string> Handles() {
        const std::lock_guard guard(mutex);
        std::vector<std::string> kinds;
        for (const auto& [handle, kind] : handles) {
            kinds.push_back(kind);
        }
        std::sort(kinds.begin(), kinds.end());
        return kinds;
    }

private:
    // A sleep of the calling thread.
    class SleepingHere {
    public:
        explicit SleepingHere(DWORD limit) {
            const std::lock_guard guard(current->mutex);
            current->sleeps[::GetCurrentThreadId()] = limit;
            if (limit == INFINITE) {
                current->sleepsForEver.Set();
            }
        }
        ~SleepingHere() {
            const std::lock_guard guard(current->mutex);
            current->sleeps.erase(::GetCurrentThreadId());
            ++current->wakeUps;
            current->wokenUp.notify_all();
        }
        SleepingHere(const SleepingHere&) = delete;
        SleepingHere& operator=(const SleepingHere&) = delete;
    };

    static DWORD Shortened(DWORD milliseconds) { return milliseconds == 15000 ? 1 : milliseconds; }

    static DWORD WINAPI WaitForOne(HANDLE handle, DWORD milliseconds) {
        const SleepingHere sleep(milliseconds);
        return ::WaitForSingleObject(handle, milliseconds);
    }
    static DWORD WINAPI WaitForSeveral(DWORD count, const HANDLE* waited, WINBOOL all, DWORD milliseconds) {
        const SleepingHere sleep(milliseconds);
        return ::WaitForMultipleObjects(count, waited, all, Shortened(milliseconds));
    }
    static WINBOOL WINAPI WaitForCondition(PCONDITION_VARIABLE variable, PSRWLOCK lock, DWORD milliseconds,
                                           ULONG flags) {
        const SleepingHere sleep(milliseconds);
        return ::SleepConditionVariableSRW(variable, lock, milliseconds, flags);
    }
    static void WINAPI Pause(DWORD milliseconds) {
        const SleepingHere sleep(milliseconds);
        ::Sleep(milliseconds);
    }

    template <class Handle>
    static Handle Keep(Handle handle, const char* kind) {
        const std::lock_guard guard(current->mutex);
        if (handle != nullptr) {
            current->handles[handle] = kind;
        }
        return handle;
    }
    static void Forget(void* handle) {
        const std::lock_guard guard(current->mutex);
        current->handles.erase(handle);
    }
    static HANDLE WINAPI Create(SECURITY_ATTRIBUTES* security, SIZE_T stack, LPTHREAD_START_ROUTINE start,
                                void* parameter, DWORD flags, DWORD* id) {
        {
            const std::lock_guard guard(current->mutex);
            ++current->threadsCreated;
        }
        return Keep(::CreateThread(security, stack, start, parameter, flags, id), "thread");
    }
    static HANDLE WINAPI CreateOneEvent(SECURITY_ATTRIBUTES* security, WINBOOL isManual, WINBOOL isSet,
                                        const char* name) {
        return Keep(::CreateEventA(security, isManual, isSet, name), "event");
    }
    static LSTATUS WINAPI OpenKey(HKEY parent, const char* path, DWORD options, REGSAM access, HKEY* key) {
        const LSTATUS result = ::RegOpenKeyExA(parent, path, options, access, key);
        if (result == ERROR_SUCCESS) {
            Keep(*key, "key");
        }
        return result;
    }
    static WINBOOL WINAPI CloseOne(HANDLE handle) {
        Forget(handle);
        return ::CloseHandle(handle);
    }
    static LSTATUS WINAPI CloseKey(HKEY key) {
        Forget(key);
        return ::RegCloseKey(key);
    }

    static inline BridgeImports* current = nullptr;

    std::vector<std::pair<void**, void*>> replaced;
    Event sleepsForEver;
    std::mutex mutex;  // of all below
    std::map<DWORD, DWORD> sleeps;
    std::map<void*, std::string> handles;
    size_t threadsCreated = 0;
    size_t wakeUps = 0;
    std::condition_variable wokenUp;
};
