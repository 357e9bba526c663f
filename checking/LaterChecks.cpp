#include "checking/LaterChecks.h"

#include <windows.h>

#include <string>

#include "base/Boundary.h"
#include "checking/AgentLook.h"
#include "checking/Environment.h"
#include "checking/Findings.h"
#include "checking/MaskComparison.h"
#include "checking/Texts.h"
#include "checking/Watch.h"
#include "msgbus/instance/VsMsgbus.h"

namespace checking {

namespace {

unsigned long Grace() noexcept {
    constexpr unsigned long usual = 5000;  // milliseconds
    return NumberFromEnvironment("VSMSGBUS_CHECK_GRACE", usual);
}

void LookForProductsOf(const std::vector<RegistrationPointer>& registrations,
                       const std::map<std::string, uint32_t>& products) {
    for (const RegistrationPointer& registration : registrations) {
        if (products.count(registration->NarrowId()) == 0) {
            Report(Rule::NeverEntered, registration->NarrowId(), {registration->Service().noun});
        }
    }
}

bool IsAgentThere() {
    const std::shared_ptr<VsMsgbus> instance = bridge::ShareBridge();
    return instance != nullptr && instance->IsStarted();
}

void Check() {
    const std::map<std::string, uint32_t> products = Watch::OfProcess().Products();
    if (products.empty()) {
        return;
    }
    if (const std::string taker = Watch::OfProcess().SinkTaker(); !taker.empty()) {
        Report(Rule::SinkTaken, taker, {products.begin()->first});
    }
    if (!IsAgentThere()) {
        LookForAgent();
        CheckLater();
        return;
    }
    for (const auto& product : products) {
        const std::string& id = product.first;
        CompareWithMask(
            product.second,
            [&](const ServiceText& service) { return Watch::OfProcess().Find(service, Wide(id)) != nullptr; },
            [&](Rule rule, std::initializer_list<std::string_view> details) { Report(rule, id, details); });
    }
    LookForProductsOf(Watch::OfProcess().Registrations(), products);
}

void CALLBACK OnTimer(PTP_CALLBACK_INSTANCE, void*, PTP_TIMER) {
    bridge::Guarded(&Check);
}

}  // namespace

void CheckLater() noexcept {
    constexpr LONGLONG ticksPerMillisecond = 10000;
    // Without a product in the bridge this library may be unloaded before the timer fires.
    if (!Watch::OfProcess().IsAnyProductIn()) {
        return;
    }
    static PTP_TIMER const timer = ::CreateThreadpoolTimer(&OnTimer, nullptr, nullptr);
    if (timer == nullptr) {
        return;
    }
    ULARGE_INTEGER due;
    due.QuadPart = static_cast<ULONGLONG>(-ticksPerMillisecond * static_cast<LONGLONG>(Grace()));
    FILETIME dueTime = {due.LowPart, due.HighPart};
    ::SetThreadpoolTimer(timer, &dueTime, 0, 0);
}

}  // namespace checking
