// Lines of the agent's log on their way to the module's sink.
#include "VsMsgbus.h"
#include "support/BridgeTest.h"
#include "support/OnPurpose.h"
#include "support/ThrowingSink.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class AgentLog : public InstalledAgentTest {
protected:
    static void Emit(uint32_t severity, const char* module = "core", const char* message = "text") {
        EXPECT_EQ(ny_sim_emit_log(severity, module, message), NY_OK);
    }
};

TEST_F(AgentLog, OfSeverityTwoReachesTheSinkAtLevelThree) {
    const Product product("PRODUCT1000", &sink);
    Emit(2, "msgbus", "connection lost");
    EXPECT_THAT(sink.log.Lines(), ElementsAre("3: NY log message, [msgbus] connection lost"));
}

TEST_F(AgentLog, OfAnyOtherSeverityReachesNothing) {
    const Product product("PRODUCT1000", &sink);
    for (const uint32_t severity : {0U, 1U, 3U, 4U, 5U, 6U, 7U, 258U, 0x80000002U, 0xFFFFFFFFU}) {
        Emit(severity);
    }
    EXPECT_THAT(sink.log.Lines(), IsEmpty());
}

TEST_F(AgentLog, IsPassedOnAsItIs) {
    const Product product("PRODUCT1000", &sink);
    Emit(2, "", "");
    Emit(2, "%s", "100% %d %n\r\n\t");
    const std::string longText(5000, 'x');
    Emit(2, "m", longText.c_str());
    EXPECT_THAT(sink.log.Lines(), ElementsAre("3: NY log message, [] ", "3: NY log message, [%s] 100% %d %n\r\n\t",
                                              "3: NY log message, [m] " + longText));
}

TEST_F(AgentLog, IsWidenedByteByByteWithTheSign) {
    const Product product("PRODUCT1000", &sink);
    Emit(2, "\xFF", "\xC3\xBC\x80\x7F");
    EXPECT_THAT(sink.log.Lines(), ElementsAre("3: " + Narrow(L"NY log message, [\uFFFF] \uFFC3\uFFBC\uFF80\u007F")));
}

TEST_F(AgentLog, GoesToTheFirstSinkGiven) {
    CapturingSink late;
    const Product first("PRODUCT1000", &sink);
    const Product second("PRODUCT2000", &late);
    Emit(2);
    EXPECT_THAT(sink.log.Lines(), ElementsAre("3: NY log message, [core] text"));
    EXPECT_THAT(late.log.Lines(), IsEmpty());
}

TEST_F(AgentLog, GoesToALaterSinkWhenTheFirstProductGaveNone) {
    const Product first("PRODUCT1000", nullptr);
    Emit(2);
    const Product second("PRODUCT2000", &sink);
    Emit(2);
    EXPECT_THAT(sink.log.Lines(), ElementsAre("3: NY log message, [core] text"));
}

TEST_F(AgentLog, EndsWithAnyProductsExit) {
    CapturingSink late;
    const Product first("PRODUCT1000", &sink);
    Product second("PRODUCT2000", &late);
    second.Exit();
    Emit(2);
    EXPECT_THAT(sink.log.Lines(), IsEmpty());
    EXPECT_THAT(late.log.Lines(), IsEmpty());
}

TEST_F(AgentLog, GoesOnWithTheSinkOfTheFirstEntryAfterAnExit) {
    CapturingSink next;
    const Product first("PRODUCT1000", &sink);
    Product(std::string("PRODUCT2000")).Exit();
    const Product third("PRODUCT3000", &next);
    Emit(2);
    EXPECT_THAT(sink.log.Lines(), IsEmpty());
    EXPECT_THAT(next.log.Lines(), ElementsAre("3: NY log message, [core] text"));
}

TEST_F(AgentLog, GoesToTheSinkOfASecondEntryOfTheSameProduct) {
    VsMsgbus* instance = nullptr;
    const Product product("PRODUCT1000", nullptr);
    ASSERT_TRUE(VsMsgbusEntry("PRODUCT1000", 0, &sink, &instance));
    Emit(2);
    EXPECT_THAT(sink.log.Lines(), ElementsAre("3: NY log message, [core] text"));
}

TEST_F(AgentLog, GoesOnAfterAnUpgrade) {
    const Product product("PRODUCT1000", &sink);
    UpgradeAndWait("5.7.1", "older");
    Emit(2);
    EXPECT_THAT(sink.log.Lines(), ElementsAre("3: NY log message, [core] text"));
}

TEST_F(AgentLog, HasNoWayOnceTheLastProductLeft) {
    Product("PRODUCT1000", &sink).Exit();
    EXPECT_EQ(ny_sim_emit_log(2, "core", "text"), NY_SIM_NOT_REGISTERED);
    EXPECT_THAT(sink.log.Lines(), IsEmpty());
}

TEST_F(AgentLog, IsNotStoppedByASinkThatThrows) {
    const OnPurpose mistakes{"CALLBACK-THREW"};
    ThrowingSink throwing;
    const Product product("PRODUCT1000", &throwing);
    Emit(2);
    Emit(2);
    EXPECT_EQ(throwing.calls, 2U);
}

TEST_F(AgentLog, IsWrittenOnTheAgentsThread) {
    class ThreadSink final : public VsKitMsgbus::ILogSink {
    public:
        void Write(int /*level*/, const wchar_t* /*text*/) override { threadId = ::GetCurrentThreadId(); }
        DWORD threadId = 0;
    };
    ThreadSink threads;
    const Product product("PRODUCT1000", &threads);
    Emit(2);
    EXPECT_NE(threads.threadId, 0U);
    EXPECT_NE(threads.threadId, ::GetCurrentThreadId());
}

}  // namespace
