#include "simulator/core/hostility/Hostility.h"

#include "simulator/core/client/OnRegistered.h"
#include "simulator/core/threads/AgentLock.h"
#include "simulator/core/threads/CallbackGate.h"

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
