// The registry key of policy names, as part of a transaction. The tests replace the functions that look
// RegOpenKeyTransactedW up, to play systems with and without transactions.
#include <cstring>
#include <string>

#include "policy/PolicyKey.h"
#include "support/AgentEnvironment.h"
#include "support/PolicyValues.h"
#include "support/SystemFunction.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

enum class Offer { NoLibrary, NoFunction, Function };

// A system that offers so much of transactions. One at a time.
class System {
public:
    explicit System(Offer systemOffer) : offer(systemOffer) { current = this; }

    LineLog asked;
    LSTATUS answer = ERROR_SUCCESS;  // of the function; when successful, the key is opened without a transaction

private:
    static HMODULE WINAPI Find(const wchar_t* name) {
        if (name == nullptr || std::wstring(name) != L"Advapi32.dll") {
            return current->finding.original(name);
        }
        return current->offer == Offer::NoLibrary ? nullptr : current->library;
    }
    static FARPROC WINAPI Resolve(HMODULE module, const char* name) {
        if (module != current->library) {
            return current->resolving.original(module, name);
        }
        current->asked.Add(name);
        const bool isKnown = current->offer == Offer::Function && std::strcmp(name, "RegOpenKeyTransactedW") == 0;
        return isKnown ? reinterpret_cast<FARPROC>(reinterpret_cast<void*>(&Open)) : nullptr;
    }
    static LSTATUS WINAPI Open(HKEY parent, const wchar_t* path, DWORD options, REGSAM access, HKEY* key,
                               HANDLE transaction, void* reserved) {
        current->asked.Add((parent == HKEY_LOCAL_MACHINE ? "HKLM " : "? ") + Narrow(path) + " " +
                           std::to_string(options) + " " + std::to_string(access) +
                           (transaction == current ? " transaction" : " ?") + (reserved == nullptr ? "" : " ?"));
        return current->answer == ERROR_SUCCESS ? ::RegOpenKeyExW(parent, path, options, access, key) : current->answer;
    }

    static inline System* current = nullptr;
    const Offer offer;
    const HMODULE library = reinterpret_cast<HMODULE>(this);  // nothing that the system knows
    SystemFunction<decltype(::GetProcAddress)> resolving{&::GetProcAddress, &Resolve};
    // Last: replacing a function calls this one.
    SystemFunction<decltype(::GetModuleHandleW)> finding{&::GetModuleHandleW, &Find};
};

class PolicyKeyTransaction : public AgentTest {
protected:
    PolicyKeyTransaction() { PolicyValues::MakeKey(); }

    static constexpr LSTATUS failure = 1;
    static constexpr char function[] = "RegOpenKeyTransactedW";
    static constexpr char call[] = R"(HKLM SOFTWARE\Corvane\Endpoint\AV 0 983103 transaction)";
};

TEST_F(PolicyKeyTransaction, IsOpenedByTheFunctionThatIsFoundAtRunTime) {
    System system(Offer::Function);
    const PolicyTransaction descriptor{&system, false};
    PolicyKey key(&descriptor);
    EXPECT_EQ(key.Open(), ERROR_SUCCESS);
    EXPECT_TRUE(key.IsOpen());
    EXPECT_THAT(system.asked.Lines(), ElementsAre(function, call));
    EXPECT_EQ(key.WriteText(L"Value", L"text"), ERROR_SUCCESS);
    EXPECT_EQ(PolicyValues::Read(L"Value"), L"text");
}

TEST_F(PolicyKeyTransaction, IsNotOpenWhenTheFunctionFails) {
    System system(Offer::Function);
    system.answer = ERROR_ACCESS_DENIED;
    const PolicyTransaction descriptor{&system, true};
    PolicyKey key(&descriptor);
    EXPECT_EQ(key.Open(), ERROR_ACCESS_DENIED);
    EXPECT_FALSE(key.IsOpen());
    EXPECT_THAT(system.asked.Lines(), ElementsAre(function, call));
}

TEST_F(PolicyKeyTransaction, IsNotOpenedWhereTheFunctionIsNotExported) {
    System system(Offer::NoFunction);
    const PolicyTransaction descriptor{&system, true};
    PolicyKey key(&descriptor);
    EXPECT_EQ(key.Open(), failure);
    EXPECT_FALSE(key.IsOpen());
    EXPECT_THAT(system.asked.Lines(), ElementsAre(function));
}

TEST_F(PolicyKeyTransaction, IsNotOpenedWhereTheLibraryIsNotLoaded) {
    System system(Offer::NoLibrary);
    const PolicyTransaction descriptor{&system, true};
    PolicyKey key(&descriptor);
    EXPECT_EQ(key.Open(), failure);
    EXPECT_FALSE(key.IsOpen());
    EXPECT_THAT(system.asked.Lines(), IsEmpty());
}

TEST_F(PolicyKeyTransaction, IsNotOpenedOnASystemWithoutTransactions) {
    const HMODULE library = ::GetModuleHandleW(L"Advapi32.dll");
    if (library != nullptr && ::GetProcAddress(library, function) != nullptr) {
        GTEST_SKIP() << "this system has transactions";
    }
    int transaction = 0;
    const PolicyTransaction descriptor{&transaction, true};
    PolicyKey key(&descriptor);
    EXPECT_EQ(key.Open(), failure);
    EXPECT_FALSE(key.IsOpen());
}

TEST_F(PolicyKeyTransaction, IsOpenedWithoutATransactionWhereThatIsAllowed) {
    const System system(Offer::Function);
    const PolicyTransaction allowing{nullptr, true};
    PolicyKey key(&allowing);
    EXPECT_EQ(key.Open(), ERROR_SUCCESS);
    EXPECT_TRUE(key.IsOpen());
    const PolicyTransaction refusing{nullptr, false};
    PolicyKey refused(&refusing);
    EXPECT_EQ(refused.Open(), failure);
    EXPECT_FALSE(refused.IsOpen());
    EXPECT_THAT(system.asked.Lines(), IsEmpty());
}

TEST_F(PolicyKeyTransaction, StaysOpenWhenItCannotBeOpenedAgain) {
    PolicyTransaction descriptor{nullptr, true};
    PolicyKey key(&descriptor);
    ASSERT_EQ(key.Open(), ERROR_SUCCESS);
    descriptor.allowsPlainOpen = false;
    EXPECT_EQ(key.Open(), failure);
    EXPECT_TRUE(key.IsOpen());
    EXPECT_EQ(key.WriteText(L"Value", L"text"), ERROR_SUCCESS);
}

}  // namespace
