#include "support/OnPurpose.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <map>
#include <mutex>
#include <set>
#include <stdexcept>
#include <string>

#include "checking/Rules.h"

namespace {

struct Named {
    std::mutex mutex;
    std::set<std::string> rules;
};

// The rules that the running test has named.
Named& OfThisTest() {
    static Named named;
    return named;
}

using CountFindings = unsigned (*)(const char* rule);

// Of the bridge that this process has; null when it is not the checking one, or none is loaded.
CountFindings FindCounter() {
    const HMODULE library = ::GetModuleHandleA("VsMsgbus.dll");
    return library == nullptr ? nullptr
                              : reinterpret_cast<CountFindings>(
                                    reinterpret_cast<void*>(::GetProcAddress(library, "VsMsgbusCheckFindings")));
}

// Fails a test that causes a finding which it has not named. What is found between two tests is the next one's.
class MistakeListener final : public testing::EmptyTestEventListener {
    void OnTestEnd(const testing::TestInfo& /*test*/) override {
        Named& named = OfThisTest();
        const std::lock_guard guard(named.mutex);
        if (const CountFindings count = FindCounter()) {
            LookAtFindings(count, named.rules);
        }
        named.rules.clear();
    }

    void LookAtFindings(CountFindings count, const std::set<std::string>& named) {
        const unsigned all = count(nullptr);
        if (all == allBefore) {
            return;
        }
        // A library that was unloaded and loaded again begins anew.
        if (all < allBefore) {
            before.clear();
        }
        allBefore = all;
        for (const checking::RuleText& rule : checking::AllRules()) {
            const unsigned now = count(rule.name);
            if (!checking::IsNote(rule.rule) && now != before[rule.name] && named.count(rule.name) == 0) {
                ADD_FAILURE() << now - before[rule.name] << " findings of " << rule.name
                              << ": standard error has each once for a product and a place";
            }
            before[rule.name] = now;
        }
    }

    unsigned allBefore = 0;
    std::map<std::string, unsigned> before;
};

[[maybe_unused]] const bool isListening = [] {
    testing::UnitTest::GetInstance()->listeners().Append(new MistakeListener);
    return true;
}();

}  // namespace

bool IsCheckingBridge() {
    return FindCounter() != nullptr;
}

OnPurpose::OnPurpose(std::initializer_list<const char*> rules) {
    Named& named = OfThisTest();
    const std::lock_guard guard(named.mutex);
    for (const char* rule : rules) {
        if (checking::FindRule(rule) == nullptr) {
            throw std::invalid_argument(std::string("docs/CHECKS.md has no rule ") + rule);
        }
        named.rules.insert(rule);
    }
}
