#include "SampleEnforcer.h"

#include <fmt/format.h>
#include <windows.h>

#include <chrono>
#include <string_view>

#include "Text.h"

namespace {

using ICallbacks = VsKitMsgbus::INYEnforcePolicy::IPolicyBag::ICallbacks;

const wchar_t* OrEmpty(const wchar_t* text) {
    return text != nullptr ? text : L"";
}

// Walks the policies, counts them and takes the settings of two sections.
class Reader final : public ICallbacks {
public:
    bool OnContainer(const wchar_t*, const wchar_t*, const wchar_t*, const wchar_t* name) override {
        ++policies;
        lastPolicy = OrEmpty(name);
        return true;
    }
    bool OnSettings(const wchar_t*, const wchar_t*, const wchar_t*) override { return true; }
    bool OnSection(const wchar_t* name, const wchar_t*) override {
        const std::wstring_view section = OrEmpty(name);
        return section == L"OnAccess" || section == L"Exclusions";
    }
    bool OnSetting(const wchar_t* section, const wchar_t* name, const wchar_t* value) override {
        settings[OrEmpty(section) + std::wstring(L"/") + OrEmpty(name)] = OrEmpty(value);
        return true;
    }

    int policies = 0;
    std::wstring lastPolicy;
    std::map<std::wstring, std::wstring> settings;
};

}  // namespace

void SampleEnforcer::EnforcePolicy(const wchar_t* productId, IPolicyBag* bag) {
    speaker.Say("module", fmt::format("is told of its policies on thread {}, and walks them", ::GetCurrentThreadId()));
    Reader reader;
    if (!bag->EnumeratePolicies(productId, &reader)) {
        speaker.Say("module", "cannot read its policies, and keeps those that it has");
        return;
    }
    const bool isFirst = kept.empty();
    speaker.Say("module",
                fmt::format("has seen {} policies and keeps {} settings of the sections OnAccess and Exclusions",
                            reader.policies, reader.settings.size()));
    SayChanges(reader.settings);
    kept = reader.settings;
    if (isFirst) {
        Reader user;
        bag->EnumerateUserPolicies(productId, &user, L"amelie", L"OFFICE");
        speaker.Say("module", fmt::format(R"(reads the policies of OFFICE\amelie: {}, "{}")", user.policies,
                                          Utf8FromWide(user.lastPolicy)));
        SayDump(*bag);
    }
    const std::lock_guard guard(mutex);
    ++times;
    enforced.notify_all();
}

void SampleEnforcer::SayChanges(const Settings& read) const {
    for (const auto& [name, value] : read) {
        const auto before = kept.find(name);
        if (before == kept.end()) {
            speaker.Say("module", fmt::format("  {} = {}", Utf8FromWide(name), Utf8FromWide(value)));
        } else if (before->second != value) {
            speaker.Say("module", fmt::format("  {} = {}, was {}", Utf8FromWide(name), Utf8FromWide(value),
                                              Utf8FromWide(before->second)));
        }
    }
}

void SampleEnforcer::SayDump(IPolicyBag& bag) const {
    VsKitMsgbus::lpc_buffer dump{};
    bag.Dump(&dump);
    std::string text = Utf8FromWide(dump.data != nullptr ? static_cast<const wchar_t*>(dump.data) : L"");
    dump.Release();
    speaker.Say("module", fmt::format("has all of it dumped, {} bytes:", text.size()));
    for (size_t begin = 0, end = 0; (end = text.find('\n', begin)) != std::string::npos; begin = end + 1) {
        speaker.Say("module", text.substr(begin, end - begin));
    }
}

bool SampleEnforcer::EnforceAgain(const std::wstring& productId) {
    std::unique_lock guard(mutex);
    const unsigned before = times;
    guard.unlock();
    speaker.Say("module", "asks the agent for its policies again");
    if (VsKitEnforceLocalPolicy(productId.c_str()) != 1) {
        return false;
    }
    guard.lock();
    return enforced.wait_for(guard, std::chrono::seconds(10), [&] { return times != before; });
}
