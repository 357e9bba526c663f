#include "checking/Registration.h"

#include <algorithm>

#include "base/ModuleCall.h"
#include "checking/Findings.h"
#include "checking/ModuleMemory.h"
#include "checking/Texts.h"
#include "checking/Watch.h"

namespace checking {

namespace {

std::string LibraryOfRegistered(const ServiceText& service, const wchar_t* id, const void* object) {
    std::string library = LibraryOf(object);
    if (const size_t slot = IsObjectThere(object) ? SlotThatIsNoFunction(object, service.slots) : 1) {
        Report(Rule::HeadersDiffer, Narrow(id), {service.noun, std::to_string(slot)});
    }
    return library;
}

}  // namespace

Registration::Registration(const ServiceText& serviceText, const wchar_t* id, const void* moduleObject)
    : service(serviceText),
      wideId(id),
      narrowId(Narrow(id)),
      object(moduleObject),
      library(LibraryOfRegistered(serviceText, id, moduleObject)),
      threadOfStack(IsOnOwnStack(moduleObject) ? ::GetCurrentThreadId() : 0) {
    if (threadOfStack != 0) {
        stackOwner = ::OpenThread(SYNCHRONIZE, FALSE, threadOfStack);
    }
}

Registration::~Registration() {
    if (stackOwner != nullptr) {
        ::CloseHandle(stackOwner);
    }
}

void Registration::ExpectThere() const {
    if (stackOwner != nullptr && ::WaitForSingleObject(stackOwner, 0) == WAIT_OBJECT_0) {
        Report(Rule::OnEndedStack, NarrowId(), {service.noun, std::to_string(threadOfStack)});
        throw bridge::ForeignException();
    }
    if (!IsObjectThere(object)) {
        Report(Rule::InterfaceGone, NarrowId(), {service.noun, library, service.remove});
        throw bridge::ForeignException();
    }
}

void Registration::Enter(const char* function) {
    const Guard guard(Watch::OfProcess().Lock());
    insiders.push_back({::GetCurrentThreadId(), function});
}

void Registration::Leave() noexcept {
    const Guard guard(Watch::OfProcess().Lock());
    const auto last = std::find_if(insiders.rbegin(), insiders.rend(),
                                   [](const Insider& insider) { return insider.thread == ::GetCurrentThreadId(); });
    if (last != insiders.rend()) {
        insiders.erase(std::next(last).base());
    }
}

bool Registration::IsThisThreadInside() const {
    const std::vector<Insider> inside = Insiders();
    return std::any_of(inside.begin(), inside.end(),
                       [](const Insider& insider) { return insider.thread == ::GetCurrentThreadId(); });
}

std::optional<Insider> Registration::InsiderOnOtherThread() const {
    for (const Insider& insider : Insiders()) {
        if (insider.thread != ::GetCurrentThreadId()) {
            return insider;
        }
    }
    return std::nullopt;
}

std::vector<Insider> Registration::Insiders() const {
    const Guard guard(Watch::OfProcess().Lock());
    return insiders;
}

}  // namespace checking
