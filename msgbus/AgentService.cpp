#include "msgbus/AgentService.h"

#include "base/UntilUnloaded.h"

CallGate& AgentCallbacks() {
    static UntilUnloaded<CallGate> callbacks;
    return callbacks.Get();
}
