// Walks over more and more settings, digests and dumps.
#include <cstdlib>
#include <cstring>

#include "bench/floor/FloorAgent.h"
#include "bench/harness/Module.h"
#include "bench/harness/Stage.h"
#include "bench/module/Measurements.h"

namespace bench {

namespace {

// The dump's text, composed from the floor's walk and handed over as the bridge hands it over.
class Composing final : public ICallbacks {
public:
    bool OnContainer(const wchar_t* featureId, const wchar_t* categoryId, const wchar_t* typeId,
                     const wchar_t* name) override {
        text.append(L"    Container FeatureId[").append(featureId).append(L"] pCatagoryId[").append(categoryId);
        text.append(L"] pTypeId[").append(typeId).append(L"] pName[").append(name).append(L"]\n");
        return true;
    }
    bool OnSettings(const wchar_t* name, const wchar_t* intParam, const wchar_t* strParam) override {
        text.append(L"      Settings Name=[").append(name).append(L"] pIntParam[").append(intParam);
        text.append(L"] pStrParam[").append(strParam).append(L"]\n");
        return true;
    }
    bool OnSection(const wchar_t* name, const wchar_t* /*reserved*/) override {
        text.append(L"         Section Name=[").append(name).append(L"]\n");
        return true;
    }
    bool OnSetting(const wchar_t* /*section*/, const wchar_t* name, const wchar_t* value) override {
        text.append(L"             ").append(name).append(L"=[").append(value).append(L"]\n");
        return true;
    }

    wchar_t* Copy() const {
        const size_t bytes = (text.size() + 1) * sizeof(wchar_t);
        auto* const copy = static_cast<wchar_t*>(std::malloc(bytes));
        if (copy == nullptr) {
            throw std::bad_alloc();
        }
        std::memcpy(copy, text.c_str(), bytes);
        return copy;
    }

private:
    std::wstring text;
};

void RequireCount(size_t counted, size_t wanted) {
    if (counted != wanted) {
        throw std::runtime_error("settings got lost");
    }
}

class PolicyRace {
public:
    PolicyRace(Session& sessionOfRace, Enforcing& modulesEnforcer, size_t settingsOfBag)
        : session(sessionOfRace), module(modulesEnforcer), settings(settingsOfBag) {
        TheBareAgent()->settings = settings;
    }

    void Walk() {
        Race(
            "walk", [this](IPolicyBag& bag) { CountOurs(bag, false); }, [this] { CountFloor(nullptr); }, 1.15);
        Race(
            "user walk", [this](IPolicyBag& bag) { CountOurs(bag, true); },
            [this] { CountFloor((std::wstring(L"DOMAIN") + L'\\' + L"user").c_str()); }, 1.15);
    }

    void Dump() {
        Race(
            "dump",
            [](IPolicyBag& bag) {
                VsKitMsgbus::lpc_buffer text{};
                bag.Dump(&text);
                RequireCount(text.length == 0, 0);
                text.Release();
            },
            [] {
                Composing composing;
                FloorWalk(bareClient, bareWideProductId, nullptr, composing);
                std::free(composing.Copy());
            },
            1.3);
    }

    void Digest() {
        TheBareAgent()->containers = settings;
        Race(
            "digest", [this](IPolicyBag& bag) { RequireCount(bag.GetDigest(bareProductId).size(), settings * 32); },
            [this] { RequireCount(FloorDigest(bareClient, bareProductId).size(), settings * 32); }, 1.15);
        TheBareAgent()->containers = 1;
    }

private:
    template <class Ours, class Floor>
    void Race(const char* what, Ours ours, Floor floor, double aim) {
        session.Race({"policies",
                      std::string(what) + " of " + std::to_string(settings) +
                          (std::string_view(what) == "digest" ? " policies" : " settings"),
                      static_cast<double>(settings),
                      static_cast<double>(settings),
                      {{"ours", [=, this](size_t count) { return TimeOfOurs(count, ours); }},
                       {"floor",
                        [=](size_t count) {
                            return SecondsOf([&] {
                                for (size_t i = 0; i < count; ++i) {
                                    floor();
                                }
                            });
                        }}},
                      aim});
    }

    // Within one notification.
    template <class Ours>
    double TimeOfOurs(size_t count, Ours ours) {
        double seconds = 0;
        module.Enforce([&](IPolicyBag& bag) {
            seconds = SecondsOf([&] {
                for (size_t i = 0; i < count; ++i) {
                    ours(bag);
                }
            });
        });
        return seconds;
    }

    void CountOurs(IPolicyBag& bag, bool isOfUser) const {
        SettingCounter counting;
        if (isOfUser) {
            bag.EnumerateUserPolicies(bareWideProductId, &counting, L"user", L"DOMAIN");
        } else {
            bag.EnumeratePolicies(bareWideProductId, &counting);
        }
        RequireCount(counting.settings, settings);
    }

    void CountFloor(const wchar_t* account) const {
        SettingCounter counting;
        FloorWalk(bareClient, bareWideProductId, account, counting);
        RequireCount(counting.settings, settings);
    }

    Session& session;
    Enforcing& module;
    const size_t settings;
};

}  // namespace

void MeasurePolicies(Session& session) {
    const Stage stage;
    const Entered entered(VsMsgbusServicePolicy);
    OpenFloorAgent(stage.Folder());
    Enforcing module;
    for (const size_t settings : {size_t{100}, size_t{1000}, size_t{10000}, size_t{100000}, size_t{1000000}}) {
        if (session.isQuick && settings > 10000) {
            break;
        }
        PolicyRace race(session, module, settings);
        race.Walk();
        race.Dump();
        if (settings <= 10000) {
            race.Digest();
        }
    }
}

}  // namespace bench
