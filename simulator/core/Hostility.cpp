#include "Hostility.h"

#include "AgentLock.h"
#include "CallbackGate.h"
#include "OnRegistered.h"

namespace simulator {

namespace {

Hostility& theHostility = *new Hostility;

}  // namespace

void Hostility::Clear() {
    TheAgentLock().Switch(false);
    CallbackGate::SetImpatient(false);
    registerCalls.Clear();
    remembered.Switch(false);
}

Hostility& TheHostility() {
    return theHostility;
}

void OnRegistered(const std::shared_ptr<Client>& client, const AnyRegistration& registration) {
    theHostility.remembered.Note(*client, registration);
    theHostility.registerCalls.Make(client, registration);
}

}  // namespace simulator
