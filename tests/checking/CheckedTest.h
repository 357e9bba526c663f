#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include <map>
#include <string>
#include <vector>

#include "checking/Rules.h"
#include "checking/exports/Checked.h"
#include "support/BridgeTest.h"
#include "support/LogFile.h"
#include "support/OnPurpose.h"

// A test with the checking bridge, an agent, and a product id of its own, because a finding is told once for each
// product. TearDown fails the test for every finding that it has not asked for with Found: a test without Found checks
// that nothing is found.
class CheckedTest : public InstalledAgentTest {
protected:
    CheckedTest() {
        for (const checking::RuleText& rule : checking::AllRules()) {
            OnPurpose{rule.name};
        }
        ::SetEnvironmentVariableW(L"VSMSGBUS_CHECK_FILE", file.path.c_str());
        // Ten minutes, in milliseconds: findings that depend on the machine's speed are made in the tests alone that
        // set a shorter time.
        SetNumber("VSMSGBUS_CHECK_GRACE", "600000");
        SetNumber("VSMSGBUS_CHECK_SLOW", "600000");
    }

    void TearDown() override {
        InstalledAgentTest::TearDown();
        SetNumber("VSMSGBUS_CHECK_GRACE", nullptr);
        SetNumber("VSMSGBUS_CHECK_SLOW", nullptr);
        // The checks of a timer may have found more of the rules that were asked for.
        for (const auto& [rule, count] : std::map(asked)) {
            Found(rule.c_str());
        }
        EXPECT_EQ(VsMsgbusCheckFindings(nullptr) - before, expected) << file.Text();
        ::SetEnvironmentVariableW(L"VSMSGBUS_CHECK_FILE", nullptr);
    }

    static void SetNumber(const char* name, const char* number) { ::SetEnvironmentVariableA(name, number); }

    // Has the checking bridge compare masks, interfaces and the agent 100 ms after the next change. A test calls it
    // before its last change.
    static void CheckSoonAfterTheNextChange() { SetNumber("VSMSGBUS_CHECK_GRACE", "100"); }

    // How many findings of the rule there are since the test began. TearDown expects them. Notes are no findings.
    unsigned Found(const char* rule) {
        const unsigned count = VsMsgbusCheckFindings(rule) - beforeOfRules.at(rule);
        if (count > asked[rule]) {
            expected += IsNote(checking::FindRule(rule)->rule) ? 0 : count - asked[rule];
            asked[rule] = count;
        }
        return count;
    }

    // The only line so far, from its rule on and without the number of the thread.
    std::string OnlyLine() const {
        std::string line = file.Text();
        const size_t thread = line.rfind("(thread ");
        if (thread == std::string::npos || line.find('\n') + 1 != line.size()) {
            return line;
        }
        const size_t number = thread + 8;
        line.erase(number, line.find_first_not_of("0123456789", number) - number);
        return line.substr(0, line.size() - 1);
    }

    const std::string id = "CHECKED" + std::to_string(++tests) + "_" + std::to_string(::GetCurrentProcessId());
    const std::wstring wideId = Wide(id);
    LogFile file;

private:
    static std::map<std::string, unsigned> CountAll() {
        std::map<std::string, unsigned> counts;
        for (const checking::RuleText& rule : checking::AllRules()) {
            counts[rule.name] = VsMsgbusCheckFindings(rule.name);
        }
        return counts;
    }

    const unsigned before = VsMsgbusCheckFindings(nullptr);
    const std::map<std::string, unsigned> beforeOfRules = CountAll();
    std::map<std::string, unsigned> asked;
    unsigned expected = 0;
    static inline unsigned tests = 0;
};
