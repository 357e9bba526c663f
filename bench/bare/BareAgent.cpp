#include "bench/bare/BareAgent.h"

BareAgent* TheBareAgent() {
    static constinit BareAgent agent;
    return &agent;
}
