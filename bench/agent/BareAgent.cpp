#include "bench/agent/BareAgent.h"

BareAgent* TheBareAgent() {
    static constinit BareAgent agent;
    return &agent;
}
