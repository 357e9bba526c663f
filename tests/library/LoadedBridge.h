#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include <string_view>

// The bridge as a module has it that loads it at run time.
class LoadedBridge {
public:
    LoadedBridge() : module(::LoadLibraryA(fileName)) { EXPECT_NE(module, nullptr) << ::GetLastError(); }
    ~LoadedBridge() { Unload(); }
    LoadedBridge(const LoadedBridge&) = delete;
    LoadedBridge& operator=(const LoadedBridge&) = delete;

    void Unload() {
        if (module != nullptr) {
            EXPECT_TRUE(::FreeLibrary(module));
            module = nullptr;
        }
    }

    HMODULE Module() const { return module; }

    // Null when it is not exported.
    template <class Function>
    Function* Export(const char* name) const {
        return reinterpret_cast<Function*>(reinterpret_cast<void*>(::GetProcAddress(module, name)));
    }

    static bool IsInMemory() { return ::GetModuleHandleA(fileName) != nullptr; }
    static bool IsLogInMemory() { return ::GetModuleHandleA(logFileName) != nullptr; }

    static constexpr const char* fileName = "VsMsgbus.dll";
    // The library that the bridge's own library loads.
    static constexpr const char* logFileName = "LogLib.dll";

private:
    HMODULE module;
};
