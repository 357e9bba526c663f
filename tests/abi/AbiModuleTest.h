#pragma once

#include <windows.h>

#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "VsMsgbus/Entry.h"
#include "abi/Pair.h"
#include "abi/module/Module.h"
#include "support/AgentEnvironment.h"
#include "support/AgentRequest.h"
#include "support/OnPurpose.h"
#include "support/Text.h"
#include "support/WatchedAgent.h"

// The module, loaded from the current folder, with the bridge that stands beside it there.
class AbiModule {
public:
    AbiModule() : library(::LoadLibraryExA(Path().c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH)) {
        EXPECT_NE(library, nullptr) << Path() << ": " << ::GetLastError();
        Call<decltype(ModuleTellTo)>("ModuleTellTo", &Note, &log);
    }
    ~AbiModule() {
        Call<decltype(ModuleTellTo)>("ModuleTellTo", nullptr, nullptr);
        ::FreeLibrary(library);
    }
    AbiModule(const AbiModule&) = delete;
    AbiModule& operator=(const AbiModule&) = delete;

    // Calls one of its functions, whose type is that of the header's declaration.
    template <class Function, class... Arguments>
    std::invoke_result_t<Function*, Arguments...> Call(const char* name, Arguments&&... arguments) const {
        auto* const function = reinterpret_cast<Function*>(reinterpret_cast<void*>(::GetProcAddress(library, name)));
        if (function == nullptr) {
            throw std::runtime_error(std::string("the module does not export ") + name);
        }
        return function(std::forward<Arguments>(arguments)...);
    }

    // `service` is the part of the names of the module's functions that says which.
    bool Offer(const std::string& service, const std::string& id) const {
        return Call<Offering>(("ModuleOffer" + service).c_str(), Wide(id).c_str());
    }
    bool Withdraw(const std::string& service, const std::string& id) const {
        return Call<Offering>(("ModuleWithdraw" + service).c_str(), Wide(id).c_str());
    }
    bool Enter(const char* id, uint32_t serviceMask) const {
        return Call<decltype(ModuleEnter)>("ModuleEnter", id, serviceMask);
    }
    bool Exit(const char* id) const { return Call<decltype(ModuleExit)>("ModuleExit", id); }

    static std::string Path() {
        char path[MAX_PATH] = {};
        ::GetFullPathNameA("abi_module.dll", MAX_PATH, path, nullptr);
        return path;
    }

    // The lines that the module has told.
    LineLog log;

private:
    using Offering = bool(const wchar_t* productId);

    static void Note(const wchar_t* line, void* log) { static_cast<LineLog*>(log)->Add(Narrow(line)); }

    HMODULE library;
};

// A test with the module, which is unloaded when it ends.
class AbiTest : public AgentTest {
protected:
    void TearDown() override {
        AgentIsLetGo();
        AgentTest::TearDown();
    }

    static constexpr const char* id = "ABI1000";
    AbiModule module;

    // The module also tries a property without a value.
    const OnPurpose usualMistakes{"PROPERTY-NULL"};
};

// The agent is there, and the module has entered for one service and offers it.
class AbiModuleTest : public AbiTest {
protected:
    AbiModuleTest(std::string service, uint32_t mask) : offered(std::move(service)), serviceMask(mask) {
        environment.InstallAgent();
    }

    void SetUp() override {
        ASSERT_TRUE(module.Offer(offered, id));
        ASSERT_TRUE(module.Enter(id, serviceMask));
    }

    void TearDown() override {
        EXPECT_TRUE(module.Exit(id));
        EXPECT_TRUE(module.Withdraw(offered, id));
        AbiTest::TearDown();
    }

private:
    const std::string offered;
    const uint32_t serviceMask;
};
