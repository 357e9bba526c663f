// Agents that are only half there: without libraries, with other files in their place, with libraries that lack
// functions.
#include <filesystem>

#include "VsMsgbus.h"
#include "support/BridgeTest.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr char notFound[] = "3: NY log message, [dispatcher] ny_grouper_add_member library failed <126>";
constexpr char notALibrary[] = "3: NY log message, [dispatcher] ny_grouper_add_member library failed <193>";
constexpr char notStarted[] = "3: NY log message, [ny_client] falied to start ny client.";
constexpr char alreadyStopped[] = "3: NY log message, [ny_client] ny client already stopped.";

class AgentBuild : public BridgeTest {
protected:
    // Entry is no failure, nothing is started, and the agent's next upgrade puts things right.
    void ExpectNoAgentUntilUpgrade(const std::vector<std::string>& linesOfEntry) {
        const Product product("PRODUCT1000", &sink);
        EXPECT_TRUE(product.IsEntered());
        EXPECT_THAT(AgentCalls(), IsEmpty());
        EXPECT_EQ(Ask("PRODUCT1000"), notAsked);
        EXPECT_EQ(sink.log.Take(), linesOfEntry);
        UpgradeAndWait("5.8.0");
        EXPECT_EQ(Ask("PRODUCT1000"), answered);
        EXPECT_THAT(sink.log.Lines(), ElementsAre(alreadyStopped));
    }

    Registration registration{"PRODUCT1000", collector};
};

TEST_F(AgentBuild, WithoutARuntimePath) {
    environment.InstallAgent();
    environment.Installer().DeleteRuntimePath();
    ExpectNoAgentUntilUpgrade({notFound, notStarted});
}

TEST_F(AgentBuild, WithARuntimePathToNowhere) {
    environment.InstallAgent();
    environment.Installer().WriteRuntimePath("C:\\no such folder");
    ExpectNoAgentUntilUpgrade({notFound, notStarted});
}

TEST_F(AgentBuild, WithAnEmptyRuntimePath) {
    environment.InstallAgent();
    environment.Installer().WriteRuntimePath("");
    ExpectNoAgentUntilUpgrade({notFound, notStarted});
}

TEST_F(AgentBuild, WithARuntimePathToAFile) {
    environment.InstallAgent();
    environment.Installer().WriteRuntimePath(environment.Installer().CurrentFolder() / "ny_client.dll");
    ExpectNoAgentUntilUpgrade({notFound, notStarted});
}

TEST_F(AgentBuild, OfTextFiles) {
    environment.InstallAgent("5.7.0", "text");
    ExpectNoAgentUntilUpgrade({notALibrary, notStarted});
}

TEST_F(AgentBuild, OfLibrariesThatExportNothing) {
    environment.InstallAgent("5.7.0", "empty");
    ExpectNoAgentUntilUpgrade({notStarted});
}

TEST_F(AgentBuild, ThatCannotBeUsedIsLeftLikeAnyOther) {
    environment.InstallAgent("5.7.0", "empty");
    Product product("PRODUCT1000", &sink);
    product.Exit();
    EXPECT_THAT(sink.log.Lines(), ElementsAre(notStarted, alreadyStopped));
}

TEST_F(AgentBuild, ThatCannotBeUsedCanReplaceOneThatCould) {
    environment.InstallAgent("5.7.0");
    Product product("PRODUCT1000", &sink);
    environment.UpgradeAgent("5.7.1", "text");
    ASSERT_TRUE(SeenByWatcher([&](auto limit) { return sink.log.WaitFor(notStarted, 1, limit); }));
    EXPECT_EQ(Ask("PRODUCT1000"), notAsked);
    UpgradeAndWait("5.7.2");
    EXPECT_EQ(Ask("PRODUCT1000"), answered);
    product.Exit();
    EXPECT_THAT(sink.log.Lines(), ElementsAre(notALibrary, notStarted, alreadyStopped));
}

TEST_F(AgentBuild, ThatLacksAFunctionServesWithItsOthers) {
    environment.InstallAgent("5.7.0", "lacking");
    CapturingSink modulesSink;
    Collector adding([](VsKitMsgbus::INYCollectProperties::ISet& set) {
        EXPECT_FALSE(set.SetProperty(L"general", L"version", L"1.0"));
    });
    const Registration own("PRODUCT2000", adding, &modulesSink);
    Product product("PRODUCT2000", &sink);
    ASSERT_TRUE(product.IsEntered());
    EXPECT_THAT(Ask("PRODUCT2000"), ElementsAre("answer 0"));
    EXPECT_THAT(modulesSink.log.Lines(), ElementsAre("5: Failed to add property for version= 1.0, exception 705"));
    product.Exit();
    EXPECT_THAT(sink.log.Lines(), IsEmpty());
}

}  // namespace
