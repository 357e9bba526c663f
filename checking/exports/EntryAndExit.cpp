#include <windows.h>

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "checking/AgentLook.h"
#include "checking/Buffers.h"
#include "checking/CheckedSink.h"
#include "checking/Findings.h"
#include "checking/Keep.h"
#include "checking/LaterChecks.h"
#include "checking/LoaderLock.h"
#include "checking/Scope.h"
#include "checking/Tasks.h"
#include "checking/Texts.h"
#include "checking/Waits.h"
#include "checking/Walks.h"
#include "checking/Watch.h"
#include "checking/exports/Checked.h"
#include "msgbus/instance/VsMsgbus.h"

using namespace checking;

namespace {

bool IsOf(const Registration& registration, const std::string& productId) {
    return registration.NarrowId() == productId;
}

std::vector<RegistrationPointer> RegistrationsOf(const std::string& productId) {
    std::vector<RegistrationPointer> ofProduct;
    for (const RegistrationPointer& registration : Watch::OfProcess().Registrations()) {
        if (IsOf(*registration, productId)) {
            ofProduct.push_back(registration);
        }
    }
    return ofProduct;
}

void LookAtEntry(const char* productId, uint32_t serviceMask, const VsKitMsgbus::ILogSink* logSink) {
    Watch& watch = Watch::OfProcess();
    if (!IsUtf8(productId)) {
        Report(Rule::IdUnusable, productId, {"VsMsgbusEntry", "not UTF-8"});
    } else {
        watch.LookAtId("VsMsgbusEntry", Wide(productId));
    }
    // A product with nothing registered may want to ask the agent, and not to be asked.
    if ((serviceMask & allServices) == 0 && (serviceMask != 0 || !RegistrationsOf(productId).empty())) {
        Report(Rule::MaskEmpty, productId, {std::to_string(serviceMask)});
    }
    if (logSink == nullptr && !watch.HasSink()) {
        Report(Rule::EntryNoSink, productId);
    }
}

// Without memory for a checked one, the module's own.
VsKitMsgbus::ILogSink* CheckSink(const char* productId, VsKitMsgbus::ILogSink* logSink) noexcept {
    VsKitMsgbus::ILogSink* checked = logSink;
    bridge::Guarded([&] {
        if (const auto sink = CheckedSink::Make(Wide(productId).c_str(), logSink)) {
            Watch::OfProcess().AddSink(sink);
            checked = sink.get();
        }
    });
    return checked;
}

bool IsIn(const char* productId) {
    const std::shared_ptr<VsMsgbus> instance = bridge::ShareBridge();
    return instance != nullptr && instance->HasProduct(productId);
}

void LookAtAnswer(const char* productId, bool isAnswered) {
    // The product may have left again inside its Entry, from a callback.
    const bool isEntered = IsIn(productId);
    if (isEntered) {
        CheckLater();
    } else {
        Watch::OfProcess().RemoveProduct(productId);
    }
    if (!isAnswered) {
        const auto code = LastRefusal();
        Report(Rule::EntryFailed, productId,
               {code.has_value() ? ", because the agent answered " + std::to_string(*code) : std::string(),
                isEntered ? "the agent has refused a service; the product is entered and must be left with VsMsgbusExit"
                          : "the product is not entered, and nobody asks it"});
    }
}

// Whether the call leaves a product.
bool LookAtExit(const char* productId, const VsMsgbus* instance) {
    if (productId == nullptr || !Watch::OfProcess().HasProduct(productId)) {
        Report(Rule::ExitUnknown, productId != nullptr ? productId : "");
        return false;
    }
    if (bridge::ShareBridge().get() != instance) {
        Report(Rule::ExitOtherInstance, productId);
        return false;
    }
    return true;
}

bool IsInsideAny(const std::vector<RegistrationPointer>& registrations) {
    for (const RegistrationPointer& registration : registrations) {
        if (registration->IsThisThreadInside()) {
            return true;
        }
    }
    return false;
}

// A thread inside FreeCookie is the module's own: the agent does not call that, and a product need not be in for it.
void LookAtThoseInside(const Registration& registration) {
    const std::vector<Insider> inside = registration.Insiders();
    const auto called = std::find_if(inside.begin(), inside.end(), [](const Insider& insider) {
        return insider.thread != ::GetCurrentThreadId() && std::string_view(insider.function) != "FreeCookie";
    });
    if (called != inside.end()) {
        Report(Rule::ExitWhileCalled, registration.NarrowId(), {std::to_string(called->thread), called->function});
    }
}

// `exit()` calls the bridge's export.
template <class Exit>
void LeaveProduct(const char* productId, const Exit& exit) {
    const std::vector<RegistrationPointer> registrations = RegistrationsOf(productId);
    if (IsInsideAny(registrations)) {
        exit();
    } else {
        const Wait wait("VsMsgbusExit", registrations);
        exit();
    }
    for (const RegistrationPointer& registration : registrations) {
        LookAtThoseInside(*registration);
    }
    ReportTasksWithoutEnd(productId);
    ReportRefusedWalks(productId);
}

void LookAtWhatStays(const char* productId) {
    Watch& watch = Watch::OfProcess();
    const bool isAnyProductLeft = watch.IsAnyProductIn();
    const auto sinks = watch.TakeSinks();
    for (const auto& sink : sinks) {
        KeepForNow(sink);
    }
    if (!isAnyProductLeft) {
        watch.SetSinkTaker("");
        ReportNotReleased();
    } else if (!sinks.empty()) {
        // The products that stay may soon leave, too, or one of them may give another sink.
        watch.SetSinkTaker(productId != nullptr ? productId : "");
        CheckLater();
    }
}

}  // namespace

bool CheckedVsMsgbusEntry(const char* productId, uint32_t serviceMask, VsKitMsgbus::ILogSink* logSink,
                          VsMsgbus** outInstance) noexcept {
    Scope scope("VsMsgbusEntry", productId != nullptr ? productId : "",
                [&](TraceArguments& arguments) { arguments.Add("mask", int64_t{serviceMask}); });
    if (productId == nullptr || outInstance == nullptr) {
        Report(Rule::EntryFailed, scope.ProductId(),
               {productId == nullptr ? ", because it is given no id" : ", because it is given null for outInstance",
                "the product is not entered, and nobody asks it"});
        return scope.Answered(VsMsgbusEntry(productId, serviceMask, logSink, outInstance));
    }
    LookAtLoaderLock("VsMsgbusEntry", scope.ProductId());
    Noted([&] {
        LookAtEntry(productId, serviceMask, logSink);
        // The module may be called before the Entry returns.
        Watch::OfProcess().AddProduct(productId, serviceMask);
    });
    ForgetRefusal();
    const bool answer = VsMsgbusEntry(productId, serviceMask, CheckSink(productId, logSink), outInstance);
    Noted([&] { LookAtAnswer(productId, answer); });
    return scope.Answered(answer);
}

bool CheckedVsMsgbusExit(const char* productId, VsMsgbus* instance) noexcept {
    Scope scope("VsMsgbusExit", productId != nullptr ? productId : "");
    LookAtLoaderLock("VsMsgbusExit", scope.ProductId());
    std::optional<bool> answer;
    const auto exit = [&] { answer = VsMsgbusExit(productId, instance); };
    Noted([&] {
        if (LookAtExit(productId, instance)) {
            Watch::OfProcess().RemoveProduct(productId);
            LeaveProduct(productId, exit);
        }
    });
    if (!answer.has_value()) {
        // No product leaves, or there was no memory for the look.
        exit();
    }
    Noted([&] { LookAtWhatStays(productId); });
    return scope.Answered(*answer);
}

VsMsgbusClientRecord* CheckedGetMsgbusClient() noexcept {
    if (!Watch::OfProcess().IsAnyProductIn()) {
        Report(Rule::NotEntered, "", {"GetMsgbusClient"});
        return nullptr;
    }
    return GetMsgbusClient();
}
