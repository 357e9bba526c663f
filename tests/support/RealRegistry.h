#pragma once

#include <windows.h>

#include "Registry.h"

// The registry of the machine itself, without redirection, and without an agent in it at first: one test of all
// programs that run at the same time has it at once. Only for the throw-away machines that Wine makes, see
// IsExpendable.
class RealRegistry {
public:
    RealRegistry() : turn(::CreateMutexA(nullptr, FALSE, "VsMsgbusTestsRealRegistry")) {
        ::WaitForSingleObject(turn, INFINITE);
        ::RegOverridePredefKey(HKEY_LOCAL_MACHINE, nullptr);
        DeleteAgent();
    }
    ~RealRegistry() {
        ::RegOverridePredefKey(HKEY_LOCAL_MACHINE, nullptr);
        DeleteAgent();
        ::ReleaseMutex(turn);
        ::CloseHandle(turn);
    }
    RealRegistry(const RealRegistry&) = delete;
    RealRegistry& operator=(const RealRegistry&) = delete;

    // Whether the machine is Wine's: on another one an agent may be at work.
    static bool IsExpendable() {
        return ::GetProcAddress(::GetModuleHandleA("ntdll.dll"), "wine_get_version") != nullptr;
    }

private:
    static void DeleteAgent() {
        if (IsExpendable()) {
            simulator::DeleteRegistryTree(HKEY_LOCAL_MACHINE, "Software\\Corvane", KEY_WOW64_64KEY);
            simulator::DeleteRegistryTree(HKEY_LOCAL_MACHINE, "Software\\Corvane", KEY_WOW64_32KEY);
        }
    }

    HANDLE turn;
};
