#pragma once

#include <array>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "dispatcher/Dispatcher.h"
#include "dispatcher/EntryPoint.h"
#include "support/AgentEnvironment.h"

using Lines = std::vector<std::string>;

// A pointer as the dispatcher's lines show it.
inline std::string Pointer(const void* pointer) {
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%p", pointer);
    return text.data();
}

// A group as an entry point's source has one, made for a test. It must live until the dispatcher is released, which
// writes into it: a member of the fixture does.
template <size_t count>
struct TestGroup {
    const char* group;
    const char* library;
    std::array<const char*, count> names;
    const char* product = agentSoftwareId;
    uint32_t version = 0;
    TablePointer table = nullptr;

    LoadRequest Request() { return {group, product, library, &version, names.data(), &table, count}; }
};

// A machine without an agent at first, and the process's dispatcher, whose lines are kept as
// "<severity> <module>: <message>".
class DispatcherTest : public AgentTest {
protected:
    void SetUp() override {
        ASSERT_EQ(DispatcherCreate(nullptr, &dispatcher), NY_OK);
        ASSERT_EQ(DispatcherSetLogSink(dispatcher, {&KeepLine, &log}), NY_OK);
    }

    void TearDown() override {
        ReleaseDispatcher();
        AgentTest::TearDown();
    }

    void ReleaseDispatcher() {
        if (dispatcher != nullptr) {
            DispatcherRelease(dispatcher);
            dispatcher = nullptr;
        }
    }

    static int32_t KeepLine(uint32_t severity, const char* module, const char* message, void* log) {
        static_cast<LineLog*>(log)->Add(std::to_string(severity) + " " + module + ": " + message);
        return NY_OK;
    }

    // A library of the agent installed last: its file, its path as the dispatcher composes it, and its handle.
    std::filesystem::path FileOf(const std::string& library) {
        return environment.Installer().CurrentFolder() / library;
    }
    std::string PathOf(const std::string& library) {
        return environment.Installer().CurrentFolder().string() + "\\" + library;
    }
    HMODULE ModuleOf(const std::string& library) { return ::GetModuleHandleA(PathOf(library).c_str()); }

    // The lines of the single steps.
    std::string LoadStarts(const std::string& what) const {
        return "5 dispatcher: ny_dispatcher_load " + Pointer(dispatcher) + " " + what;
    }
    static std::string LoadReturns(int code) {
        return "5 dispatcher: ny_dispatcher_load returns <" + std::to_string(code) + ">";
    }
    static std::string Opens(const std::string& path) { return "5 dispatcher: dispatcher dl_open " + path + " 0"; }
    static std::string Opened(const void* module) {
        return "5 dispatcher: dispatcher dl_open success " + Pointer(module);
    }
    static std::string OpenFails(int code) {
        const std::string text = std::to_string(code);
        return "5 dispatcher: dispatcher dl_open failed, error <" + text + ">, errno<" + text + ">";
    }
    static std::string Closes(const void* module) { return "5 dispatcher: dispatcher dl_close " + Pointer(module); }
    static std::string Resolves(const void* module, const std::string& name) {
        return "6 dispatcher: dispatcher dl_sym " + Pointer(module) + ", " + name;
    }
    static std::string Found(const void* module, const std::string& name) { return Resolves(module, name) + " found"; }
    static std::string NotFound(const void* module, const std::string& name) {
        return "5 dispatcher: dispatcher dl_sym " + Pointer(module) + ", " + name + " not found, last error <" +
               std::to_string(ERROR_PROC_NOT_FOUND) + ">";
    }
    static std::string Failed(const std::string& step, int code) {
        return "2 dispatcher: " + step + " failed <" + std::to_string(code) + ">";
    }

    static inline const std::string loadsTable = "6 dispatcher: ny_grouper_load_sym_table";
    static inline const std::string tableIsThere = "6 dispatcher: sym_addr_table is not null";

    LineLog log;
    Dispatcher* dispatcher = nullptr;
};
