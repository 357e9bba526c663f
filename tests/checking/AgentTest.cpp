// The checking bridge's notes when there is no agent, or not all of one. Notes are no findings.
#include <filesystem>

#include "checking/CheckedTest.h"

namespace {

class AgentNotes : public CheckedTest {
protected:
    // Enters with an agent as the test has left it, and waits until the rule is told.
    void EnterUntilNoted(const char* rule) {
        const unsigned noted = VsMsgbusCheckFindings(rule);
        const Registration registration(id, collector);
        CheckSoonAfterTheNextChange();
        const Product product(id, &sink);
        EXPECT_TRUE(WaitUntil([&] { return VsMsgbusCheckFindings(rule) > noted; })) << rule;
    }
};

TEST_F(AgentNotes, NameAnAgentThatIsNotInstalled) {
    environment.Installer().DeleteAgentKey();
    EnterUntilNoted("AGENT-ABSENT");
    EXPECT_THAT(file.Text(),
                testing::HasSubstr("VsMsgbus note [AGENT-ABSENT] (no product): the registry has no key "
                                   "HKEY_LOCAL_MACHINE\\Software\\Corvane\\Agent (error 2): there is no agent on this "
                                   "machine that could ask a module. Install an agent, or the simulated one: "
                                   "docs/GETTING_STARTED.md shows how. (thread "));
}

TEST_F(AgentNotes, NameAMissingVersion) {
    environment.Installer().DeleteVersion();
    EnterUntilNoted("AGENT-WITHOUT-VERSION");
}

TEST_F(AgentNotes, NameAMissingPath) {
    environment.Installer().DeleteRuntimePath();
    EnterUntilNoted("AGENT-WITHOUT-PATH");
}

TEST_F(AgentNotes, NameALibraryThatIsMissing) {
    std::filesystem::remove(environment.Installer().CurrentFolder() / "ny_client.dll");
    EnterUntilNoted("AGENT-LIBRARY");
}

TEST_F(AgentNotes, NameAFunctionThatCannotBeReached) {
    environment.RemoveAgent();
    environment.InstallAgent("5.7.0", "lacking");
    const unsigned noted = VsMsgbusCheckFindings("AGENT-EXPORT");
    const Registration registration(id, collector);
    const Product product(id, &sink);
    collector.collect = [](auto& set) { EXPECT_FALSE(set.SetProperty(L"general", L"version", L"1.0")); };
    EXPECT_EQ(Ask(id), std::vector<std::string>{"answer 0"});
    EXPECT_GT(VsMsgbusCheckFindings("AGENT-EXPORT"), noted);
}

}  // namespace
