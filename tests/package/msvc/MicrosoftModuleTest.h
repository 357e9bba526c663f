#pragma once

#include <windows.h>

#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "VsMsgbus/Entry.h"
#include "package/msvc/module/MicrosoftModule.h"
#include "support/BridgeTest.h"
#include "support/Text.h"

// A module that another compiler made, loaded from its file.
class MicrosoftModule {
public:
    MicrosoftModule() : library(::LoadLibraryA("microsoft_module.dll")) {
        EXPECT_NE(library, nullptr) << ::GetLastError();
        Call<decltype(MicrosoftModuleTellTo)>("MicrosoftModuleTellTo", &Note, &log);
    }
    ~MicrosoftModule() { ::FreeLibrary(library); }
    MicrosoftModule(const MicrosoftModule&) = delete;
    MicrosoftModule& operator=(const MicrosoftModule&) = delete;

    // Calls one of its functions, whose type is that of the header's declaration.
    template <class Function, class... Arguments>
    std::invoke_result_t<Function*, Arguments...> Call(const char* name, Arguments&&... arguments) const {
        auto* const function = reinterpret_cast<Function*>(reinterpret_cast<void*>(::GetProcAddress(library, name)));
        if (function == nullptr) {
            throw std::runtime_error(std::string("the module does not export ") + name);
        }
        return function(std::forward<Arguments>(arguments)...);
    }

    // What it told.
    LineLog log;

private:
    static void Note(const wchar_t* line, void* log) { static_cast<LineLog*>(log)->Add(Narrow(line)); }

    HMODULE library;
};

// The agent is there, and the module has entered for one service and offers it.
class MicrosoftModuleTest : public AgentTest {
protected:
    // `service` is the part of the names of the module's two functions that says which.
    MicrosoftModuleTest(const std::string& service, uint32_t mask)
        : offer("MicrosoftModuleOffer" + service), withdraw("MicrosoftModuleWithdraw" + service), serviceMask(mask) {
        environment.InstallAgent();
    }

    void SetUp() override {
        ASSERT_TRUE(module.Call<Offer>(offer.c_str(), Wide(id).c_str()));
        ASSERT_TRUE(module.Call<decltype(MicrosoftModuleEnter)>("MicrosoftModuleEnter", id, serviceMask));
    }

    void TearDown() override {
        EXPECT_TRUE(module.Call<decltype(MicrosoftModuleExit)>("MicrosoftModuleExit", id));
        EXPECT_TRUE(module.Call<Offer>(withdraw.c_str(), Wide(id).c_str()));
        AgentTest::TearDown();
    }

    static constexpr const char* id = "MICROSOFT1000";
    MicrosoftModule module;

private:
    using Offer = bool(const wchar_t* productId);

    const std::string offer;
    const std::string withdraw;
    const uint32_t serviceMask;
};
