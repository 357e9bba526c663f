#include "checking/Registration.h"

#include <algorithm>
#include <set>

#include "base/ModuleCall.h"
#include "base/NoDestroyAtExit.h"
#include "checking/Findings.h"
#include "checking/ModuleMemory.h"
#include "checking/Texts.h"
#include "checking/Watch.h"

namespace checking {

namespace {

// The registrations whose objects lie on a stack.
struct OnStacks {
    StateLock lock;
    std::set<Registration*> all GUARDED_BY(lock);

    static OnStacks& OfProcess() {
        static bridge::NoDestroyAtExit<OnStacks> onStacks;
        return *onStacks;
    }
};

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
      firstFunction(IsObjectThere(moduleObject) ? FirstFunction(moduleObject) : nullptr),
      library(LibraryOfRegistered(serviceText, id, moduleObject)),
      threadOfStack(IsOnOwnStack(moduleObject) ? ::GetCurrentThreadId() : 0) {
    if (threadOfStack != 0) {
        const Guard guard(OnStacks::OfProcess().lock);
        OnStacks::OfProcess().all.insert(this);
    }
}

Registration::~Registration() {
    if (threadOfStack != 0) {
        const Guard guard(OnStacks::OfProcess().lock);
        OnStacks::OfProcess().all.erase(this);
    }
}

void Registration::NoteThreadEnd(DWORD thread) noexcept {
    const Guard guard(OnStacks::OfProcess().lock);
    for (Registration* const registration : OnStacks::OfProcess().all) {
        if (registration->threadOfStack == thread) {
            registration->isStackGone = true;
        }
    }
}

void Registration::ExpectThere() const {
    if (isStackGone) {
        Report(Rule::OnEndedStack, NarrowId(), {service.noun, std::to_string(threadOfStack)});
        throw bridge::ForeignException();
    }
    const void* const function = FirstFunction(object);
    if (function == nullptr || (function != firstFunction && !IsObjectThere(object))) {
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
