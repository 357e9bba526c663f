// The texts of a walk through the C++ layer, told by a bag that keeps each of them no longer than it must.
#include <array>

#include "cpp/LayerTest.h"

using testing::ElementsAre;

namespace {

// A bag of two policies that gives every callback its texts in the same memory and overwrites them when it has
// returned.
class OverwritingBag final : public VsKitMsgbus::INYEnforcePolicy::IPolicyBag {
public:
    bool EnumerateUserPolicies(const wchar_t* productId, ICallbacks* callbacks, const wchar_t* /*user*/,
                               const wchar_t* /*domain*/) override {
        return EnumeratePolicies(productId, callbacks);
    }

    bool EnumeratePolicies(const wchar_t* /*productId*/, ICallbacks* callbacks) override {
        callbacks->OnContainer(Lend(0, L"a feature"), Lend(1, L"a category"), Lend(2, L"a type"), Lend(3, L"a policy"));
        Overwrite();
        TellSettings(*callbacks, L"first section");
        TellSettings(*callbacks, L"second section");
        callbacks->OnContainer(nullptr, nullptr, nullptr, Lend(0, L"another policy"));
        Overwrite();
        TellSettings(*callbacks, L"third section");
        return true;
    }

    void Dump(VsKitMsgbus::lpc_buffer* /*result*/) override {}
    std::string GetDigest(const char* /*productId*/) override { return {}; }
    bool GetDigestText(const char* /*productId*/, VsKitMsgbus::lpc_buffer* /*digests*/) override { return false; }

private:
    // The memory with this text in it.
    const wchar_t* Lend(size_t place, const std::wstring& text) {
        lent[place] = text;
        return lent[place].c_str();
    }

    void Overwrite() {
        for (std::wstring& text : lent) {
            text.assign(text.size(), L'#');
        }
    }

    void TellSettings(ICallbacks& callbacks, const wchar_t* section) {
        callbacks.OnSettings(Lend(0, L"a settings object"), nullptr, Lend(1, L"a parameter"));
        Overwrite();
        callbacks.OnSection(Lend(0, section), nullptr);
        Overwrite();
        for (const wchar_t* const name : {L"first name", L"second name"}) {
            callbacks.OnSetting(Lend(0, section), Lend(1, name), Lend(2, L"a value"));
            Overwrite();
        }
    }

    // Longer than every text, so that none moves.
    std::array<std::wstring, 4> lent = {std::wstring(64, L'#'), std::wstring(64, L'#'), std::wstring(64, L'#'),
                                        std::wstring(64, L'#')};
};

class LayerPolicyTexts : public testing::Test {
protected:
    static std::string TextOf(const vsmsgbus::Setting& setting) {
        std::string text;
        for (const vsmsgbus::PolicyText part :
             {setting.feature, setting.category, setting.type, setting.policy, setting.settings, setting.intParam,
              setting.strParam, setting.section, setting.name, setting.value}) {
            text += (text.empty() ? "" : "|") + (part.IsAbsent() ? "null" : Narrow(part));
        }
        return text;
    }

    static auto AreThoseOfTheBag() {
        const std::string first = "a feature|a category|a type|a policy|a settings object|null|a parameter|";
        const std::string second = "null|null|null|another policy|a settings object|null|a parameter|";
        return ElementsAre(first + "first section|first name|a value", first + "first section|second name|a value",
                           first + "second section|first name|a value", first + "second section|second name|a value",
                           second + "third section|first name|a value", second + "third section|second name|a value");
    }

    OverwritingBag bag;
    vsmsgbus::detail::Log log{nullptr};
    vsmsgbus::Policies policies{L"PRODUCT1000", bag, log};
};

TEST_F(LayerPolicyTexts, StayForAVisitorWhenTheirCallbackHasReturned) {
    std::vector<std::string> seen;
    const auto visitor = [&](const vsmsgbus::Setting& setting) { seen.push_back(TextOf(setting)); };
    policies.Walk(visitor);
    EXPECT_THAT(seen, AreThoseOfTheBag());
    seen.clear();
    policies.WalkOfUser("user", "domain", visitor);
    EXPECT_THAT(seen, AreThoseOfTheBag());
}

TEST_F(LayerPolicyTexts, StayInARange) {
    const auto textsOf = [](const vsmsgbus::SettingList& list) {
        std::vector<std::string> texts;
        for (const vsmsgbus::Setting& setting : list) {
            texts.push_back(TextOf(setting));
        }
        return texts;
    };
    EXPECT_THAT(textsOf(policies.Settings()), AreThoseOfTheBag());
    EXPECT_THAT(textsOf(policies.SettingsOfUser("user", "domain")), AreThoseOfTheBag());
}

TEST_F(LayerPolicyTexts, OfASectionAreFoundByItsName) {
    EXPECT_THAT(policies.Section("second section"),
                ElementsAre(testing::Pair(L"first name", L"a value"), testing::Pair(L"second name", L"a value")));
}

}  // namespace
