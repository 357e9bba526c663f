#include "msgbus/AgentService.h"

CallGate& AgentCallbacks() {
    static CallGate callbacks;
    return callbacks;
}
