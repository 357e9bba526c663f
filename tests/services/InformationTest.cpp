// Asking the agent about itself.
#include <atomic>
#include <iterator>
#include <optional>
#include <thread>

#include "services/ServicesTest.h"
#include "support/KeptHandles.h"
#include "support/OnPurpose.h"
#include "support/Text.h"

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;
using VsKitMsgbus::lpc_buffer;

namespace {

// By index.
constexpr const char* keyNames[] = {
    "AgentMode",   "GUID",    "LogLocation", "RdxServerLastUsed",    "RdxPortLastUsed", "RdxServerList",
    "RdxPortList", "Version", "LastASCTime", "LastPolicyUpdateTime", "CryptoMode",
};

constexpr unsigned int untouchedMode = 77;

// A text as the bridge returns it; released at the end.
struct ReturnedText : lpc_buffer {
    ReturnedText() = default;
    ~ReturnedText() { Release(); }
    ReturnedText(const ReturnedText&) = delete;
    ReturnedText& operator=(const ReturnedText&) = delete;

    // "wide <text>", "narrow <text>" or "empty".
    std::string Described() const {
        if (kind == WideText) {
            const std::wstring_view text(static_cast<const wchar_t*>(data), length);
            EXPECT_EQ(text.data()[length], L'\0');
            return "wide <" + Narrow(text) + ">";
        }
        if (kind == NarrowText) {
            const std::string_view text(static_cast<const char*>(data), length);
            EXPECT_EQ(text.data()[length], '\0');
            return "narrow <" + std::string(text) + ">";
        }
        EXPECT_EQ(kind, 0U);
        EXPECT_EQ(length, 0U);
        EXPECT_EQ(data, nullptr);
        return "empty";
    }
};

// The outcome of one question: "1: wide <text>".
std::string Information(unsigned int index) {
    ReturnedText out;
    const int32_t result = VsKitMsgbusGetInformation(index, &out);
    return std::to_string(result) + ": " + out.Described();
}

std::string InfoByName(const char* key) {
    ReturnedText out;
    const int32_t result = VsKitMsgbusGetInfoByKeyName(key, &out);
    return std::to_string(result) + ": " + out.Described();
}

// The result and the mode.
std::string ManagedMode() {
    unsigned int mode = untouchedMode;
    const int32_t result = VsKitMsgbusManagedMode(&mode);
    return std::to_string(result) + ": " + std::to_string(mode);
}

void SetInformation(const char* key, const std::string& json) {
    ASSERT_EQ(ny_sim_set_information(key, json.c_str()), NY_OK);
}

std::string FailedLine(int32_t code) {
    return "3: Failed to get the agent info, excpetion:[" + std::to_string(code) + "]";
}

class AgentInformation : public ServicesTest {
protected:
    const std::string unknownKey = std::to_string(NY_SIM_UNKNOWN_KEY);
};

TEST_F(AgentInformation, HasAKeyForEachIndex) {
    for (size_t i = 0; i < std::size(keyNames); ++i) {
        SetInformation(keyNames[i], "\"the " + std::string(keyNames[i]) + "\"");
    }
    for (size_t i = 0; i < std::size(keyNames); ++i) {
        EXPECT_EQ(Information(static_cast<unsigned int>(i)), "1: wide <the " + std::string(keyNames[i]) + ">");
        EXPECT_EQ(InfoByName(keyNames[i]), "0: narrow <the " + std::string(keyNames[i]) + ">");
    }
    EXPECT_EQ(Information(VsMsgbusInformationCryptoMode), "1: wide <the CryptoMode>");
    EXPECT_THAT(sink.log.Lines(), IsEmpty());
}

TEST_F(AgentInformation, HasNoKeyForOtherIndices) {
    for (const unsigned int index : {11U, 12U, 0x80000000U, 0xFFFFFFFFU}) {
        ny_sim_clear_calls();
        EXPECT_EQ(Information(index), "0: empty");
        EXPECT_EQ(ny_sim_call_count(nullptr), 0U);
    }
    EXPECT_THAT(sink.log.Lines(), IsEmpty());
}

TEST_F(AgentInformation, IsThereForAnyNameThatTheAgentKnows) {
    SetInformation("A key of its own", "\"value\"");
    SetInformation("", "\"nameless\"");
    EXPECT_EQ(InfoByName("A key of its own"), "0: narrow <value>");
    EXPECT_EQ(InfoByName(""), "0: narrow <nameless>");
    EXPECT_EQ(InfoByName("a key of its own"), unknownKey + ": empty");
    EXPECT_THAT(sink.log.Lines(), IsEmpty());
}

TEST_F(AgentInformation, ThatTheAgentLacksIsToldByIndexAndAnsweredByName) {
    EXPECT_EQ(Information(1), "0: empty");
    EXPECT_THAT(sink.log.Take(), ElementsAre(FailedLine(NY_SIM_UNKNOWN_KEY)));
    EXPECT_EQ(InfoByName("GUID"), unknownKey + ": empty");
    EXPECT_EQ(ManagedMode(), "0: 77");
    EXPECT_THAT(sink.log.Lines(), ElementsAre(FailedLine(NY_SIM_UNKNOWN_KEY)));
}

TEST_F(AgentInformation, ThatIsEmptyIsNoneByIndexAndAnEmptyTextByName) {
    SetInformation("GUID", "\"\"");
    EXPECT_EQ(Information(1), "0: empty");
    EXPECT_EQ(InfoByName("GUID"), "0: narrow <>");
    EXPECT_THAT(sink.log.Lines(), IsEmpty());
}

TEST_F(AgentInformation, ComesInEveryAlphabetAndLengthAndWithZeros) {
    const std::string longText(100000, 'x');
    for (const std::string& text : {std::string("\xC3\xA9"), std::string("\xE4\xBA\xA7\xE5\x93\x81"),
                                    std::string("\xF0\x9F\x98\x80"), std::string("100% %s"), longText}) {
        SetInformation("GUID", "\"" + text + "\"");
        EXPECT_EQ(Information(1), "1: wide <" + text + ">");
        EXPECT_EQ(InfoByName("GUID"), "0: narrow <" + text + ">");
    }
    SetInformation("GUID", R"("be\u0000hind")");
    const std::string withZero("be\0hind", 7);
    EXPECT_EQ(Information(1), "1: wide <" + withZero + ">");
    EXPECT_EQ(InfoByName("GUID"), "0: narrow <" + withZero + ">");
}

// The first text is freed before the second is stored: a leak is what the checking builds would find.
TEST_F(AgentInformation, TakesThePlaceOfWhatTheBufferHeld) {
    SetInformation("GUID", "\"first\"");
    SetInformation("Version", "\"second\"");
    ReturnedText out;
    EXPECT_EQ(VsKitMsgbusGetInformation(1, &out), 1);
    EXPECT_EQ(VsKitMsgbusGetInfoByKeyName("Version", &out), 0);
    EXPECT_EQ(out.Described(), "narrow <second>");
    EXPECT_EQ(VsKitMsgbusGetInformation(1, &out), 1);
    EXPECT_EQ(out.Described(), "wide <first>");
    EXPECT_EQ(VsKitMsgbusGetInformation(11, &out), 0);
    EXPECT_EQ(out.Described(), "empty");
    EXPECT_EQ(VsKitMsgbusGetInformation(1, &out), 1);
    EXPECT_EQ(VsKitMsgbusGetInfoByKeyName("no such key", &out), NY_SIM_UNKNOWN_KEY);
    EXPECT_EQ(out.Described(), "empty");
}

TEST_F(AgentInformation, RefusesNull) {
    SetInformation("GUID", "\"value\"");
    ReturnedText out;
    ASSERT_EQ(VsKitMsgbusGetInformation(1, &out), 1);
    EXPECT_EQ(VsKitMsgbusGetInfoByKeyName(nullptr, &out), -1);
    EXPECT_EQ(out.Described(), "wide <value>") << "emptied, though the key was null";
    ny_sim_clear_calls();
    EXPECT_EQ(VsKitMsgbusGetInfoByKeyName("GUID", nullptr), -1);
    EXPECT_EQ(VsKitMsgbusGetInfoByKeyName(nullptr, nullptr), -1);
    EXPECT_EQ(VsKitMsgbusGetInformation(1, nullptr), 0);
    EXPECT_EQ(VsKitMsgbusManagedMode(nullptr), 0);
    EXPECT_EQ(ny_sim_call_count(nullptr), 0U);
}

TEST_F(AgentInformation, SaysTheModeForThreeTextsAlone) {
    const std::pair<const char*, const char*> expected[] = {
        {"0", "1: 0"},   {"1", "1: 1"},   {"2", "1: 2"},   {"3", "1: 77"}, {" 1", "1: 77"}, {"10", "1: 77"},
        {"1 ", "1: 77"}, {"00", "1: 77"}, {"-1", "1: 77"}, {"x", "1: 77"}, {"", "0: 77"}};
    for (const auto& [text, outcome] : expected) {
        SetInformation("AgentMode", "\"" + std::string(text) + "\"");
        EXPECT_EQ(ManagedMode(), outcome) << text;
    }
    SetInformation("AgentMode", R"("1\u0000")");
    EXPECT_EQ(ManagedMode(), "1: 77");
    EXPECT_THAT(sink.log.Lines(), IsEmpty());
}

TEST_F(AgentInformation, WithoutAnAgentFailsWith705) {
    LoseAgent();
    ny_sim_clear_calls();
    EXPECT_EQ(Information(1), "0: empty");
    EXPECT_EQ(ManagedMode(), "0: 77");
    EXPECT_THAT(sink.log.Take(), ElementsAre(FailedLine(705), FailedLine(705)));
    EXPECT_EQ(InfoByName("GUID"), "705: empty");
    EXPECT_THAT(sink.log.Lines(), IsEmpty());
    EXPECT_EQ(ny_sim_call_count(nullptr), 0U);
}

TEST_F(AgentInformation, OnManyThreadsIsThereOrNotWhileTheAgentIsUpgraded) {
    SetInformation("GUID", "\"value\"");
    UpgradeDuring([] {
        const std::string named = InfoByName("GUID");
        EXPECT_TRUE(named == "0: narrow <value>" || named == "705: empty") << named;
        const std::string outcome = Information(1);
        EXPECT_TRUE(outcome == "1: wide <value>" || outcome == "0: empty") << outcome;
        return outcome == "1: wide <value>";
    });
}

// A sink is a module's code and may do what it likes, leave the bridge included.
TEST_F(AgentInformation, IsLoggedToASinkThatMayLeaveTheBridge) {
    class LeavingSink final : public VsKitMsgbus::ILogSink {
    public:
        explicit LeavingSink(Product& productToLeave) : leaving(productToLeave) {}
        void Write(int /*level*/, const wchar_t* /*text*/) override { leaving.Exit(); }

    private:
        Product& leaving;
    };
    product.Exit();
    std::optional<Product> other;
    class Holder final : public VsKitMsgbus::ILogSink {
    public:
        void Write(int level, const wchar_t* text) override {
            if (inner != nullptr) {
                inner->Write(level, text);
            }
        }
        VsKitMsgbus::ILogSink* inner = nullptr;
    } holder;
    other.emplace("PRODUCT2000", &holder, 0U);
    LeavingSink leavingSink(*other);
    holder.inner = &leavingSink;
    EXPECT_EQ(Information(1), "0: empty");
    EXPECT_EQ(::GetModuleHandleA("ny_client.dll"), nullptr);
}

class InformationFault : public ServicesTest {
protected:
    void SetUp() override { SetInformation("AgentMode", "\"1\""); }

    static std::vector<std::string> CallsOf(const std::function<void()>& ask) {
        ny_sim_clear_calls();
        ask();
        return AgentCalls();
    }
};

TEST_F(InformationFault, CanBeInTheseCalls) {
    const std::vector<std::string> reading = {"ny_info_get",          "ny_variant_get_string_buffer",
                                              "ny_buffer_get_string", "ny_buffer_get_string",
                                              "ny_buffer_release",    "ny_variant_release"};
    EXPECT_THAT(CallsOf([] { ManagedMode(); }), ElementsAreArray(reading));
    std::vector<std::string> readingAndWidening = reading;
    for (const char* const call :
         {"ny_variant_create_from_string", "ny_variant_get_wstring_buffer", "ny_wbuffer_get_string",
          "ny_wbuffer_get_string", "ny_wbuffer_release", "ny_variant_release"}) {
        readingAndWidening.emplace_back(call);
    }
    EXPECT_THAT(CallsOf([] { Information(0); }), ElementsAreArray(readingAndWidening));
    EXPECT_THAT(CallsOf([] { InfoByName("AgentMode"); }),
                ElementsAre("ny_info_get", "ny_variant_get_string", "ny_variant_release"));
}

TEST_F(InformationFault, AtReadingByNameIsLoggedAndGivesAnEmptyText) {
    for (const int32_t code : faultCodes) {
        ASSERT_EQ(ny_sim_fail_call("ny_variant_get_string", 1, code, NY_SIM_ONCE), NY_OK);
        EXPECT_EQ(InfoByName("AgentMode"), "0: narrow <>");
        EXPECT_THAT(sink.log.Take(), ElementsAre("3: Failed to get ny info, excpetion:[" + std::to_string(code) + "]"));
    }
    SetInformation("AgentMode", "{}");
    EXPECT_EQ(InfoByName("AgentMode"), "0: narrow <>");
    EXPECT_THAT(sink.log.Take(), ElementsAre("3: Failed to get ny info, excpetion:[1]"));
}

TEST_F(InformationFault, AtReleasingByNameIsLoggedAndKeepsTheText) {
    for (const int32_t code : faultCodes) {
        SetInformation("a %s key", "\"1\"");
        KeptHandles kept;
        ASSERT_EQ(ny_sim_fail_call("ny_variant_release", 1, code, NY_SIM_ONCE), NY_OK);
        EXPECT_EQ(InfoByName("a %s key"), "0: narrow <1>");
        EXPECT_THAT(sink.log.Take(),
                    ElementsAre("3: Unable to release ny variant for a %s key excpetion: " + std::to_string(code)));
        EXPECT_EQ(kept.Release(), 1U);
    }
}

class InformationOutsideOfTheBridge : public InstalledAgentTest {
protected:
    // Nothing is there, nothing is logged, and buffers are emptied all the same.
    static void ExpectNothing() {
        SetInformation("AgentMode", "\"1\"");
        ny_sim_clear_calls();
        EXPECT_EQ(Information(0), "0: empty");
        EXPECT_EQ(InfoByName("AgentMode"), "-1: empty");
        EXPECT_EQ(ManagedMode(), "0: 77");
        EXPECT_EQ(ny_sim_call_count(nullptr), 0U);
    }
};

TEST_F(InformationOutsideOfTheBridge, IsNotThereBeforeEntryAndAfterTheLastExit) {
    const OnPurpose mistakes{"BUFFER-NOT-RELEASED"};
    ExpectNothing();
    ReturnedText out;
    {
        const Product product("PRODUCT1000", &sink, 0);
        SetInformation("AgentMode", "\"1\"");
        EXPECT_EQ(VsKitMsgbusGetInformation(0, &out), 1);
    }
    EXPECT_EQ(VsKitMsgbusGetInformation(0, &out), 0);
    EXPECT_EQ(out.Described(), "empty");
    ExpectNothing();
    EXPECT_THAT(sink.log.Lines(), IsEmpty());
}

}  // namespace
