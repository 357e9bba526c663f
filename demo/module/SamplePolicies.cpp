#include "SamplePolicies.h"

#include <windows.h>

#include <chrono>
#include <set>

using vsmsgbus::Setting;
using vsmsgbus::Utf8;

namespace {

std::string NameOf(const Setting& setting) {
    return Utf8(setting.section) + "/" + Utf8(setting.name);
}

}  // namespace

void SamplePolicies::Enforce(vsmsgbus::Policies& policies) {
    speaker.Say("is told of its policies on thread {}, and walks them", ::GetCurrentThreadId());
    const bool isFirst = kept.empty();
    const Settings read = Read(policies);
    SayChanges(read);
    kept = read;
    if (isFirst) {
        SayPoliciesOfUser(policies);
        SayDump(policies);
    }
    const std::lock_guard guard(mutex);
    ++times;
    enforced.notify_all();
}

SamplePolicies::Settings SamplePolicies::Read(vsmsgbus::Policies& policies) const {
    std::set<std::wstring> seen;
    Settings read;
    policies.Walk([&](const Setting& setting) {
        seen.emplace(setting.policy);
        if (setting.section == L"OnAccess" || setting.section == L"Exclusions") {
            read[NameOf(setting)] = Utf8(setting.value);
        }
    });
    speaker.Say("has seen {} policies and keeps {} settings of the sections OnAccess and Exclusions", seen.size(),
                read.size());
    return read;
}

void SamplePolicies::SayChanges(const Settings& read) const {
    for (const auto& [name, value] : read) {
        const auto before = kept.find(name);
        if (before == kept.end()) {
            speaker.Say("  {} = {}", name, value);
        } else if (before->second != value) {
            speaker.Say("  {} = {}, was {}", name, value, before->second);
        }
    }
}

void SamplePolicies::SayPoliciesOfUser(vsmsgbus::Policies& policies) const {
    for (const Setting& setting : policies.SettingsOfUser("amelie", "OFFICE")) {
        speaker.Say(R"(reads the policies of OFFICE\amelie: {} = {}, of "{}")", NameOf(setting), Utf8(setting.value),
                    Utf8(setting.policy));
    }
}

void SamplePolicies::SayDump(vsmsgbus::Policies& policies) const {
    const std::string text = Utf8(policies.Dump());
    speaker.Say("has all of it dumped, {} bytes:", text.size());
    for (size_t begin = 0, end = 0; (end = text.find('\n', begin)) != std::string::npos; begin = end + 1) {
        speaker.Say("{}", text.substr(begin, end - begin));
    }
}

bool SamplePolicies::EnforceAgain(const vsmsgbus::Product& product) {
    std::unique_lock guard(mutex);
    const unsigned before = times;
    guard.unlock();
    speaker.Say("asks the agent for its policies again");
    if (!product.EnforcePolicies()) {
        return false;
    }
    guard.lock();
    return enforced.wait_for(guard, std::chrono::seconds(10), [&] { return times != before; });
}
