#include "simulator/core/handles/HandleKinds.h"

namespace simulator {

const char* NameOf(HandleKind kind) {
    switch (kind) {
        case HandleKind::Any: return "any";
        case HandleKind::Buffer: return "buffer";
        case HandleKind::WideBuffer: return "wide buffer";
        case HandleKind::Variant: return "variant";
        case HandleKind::Table: return "table";
        case HandleKind::Array: return "array";
        case HandleKind::Client: return "client";
        case HandleKind::PropertyBag: return "property bag";
        case HandleKind::Logger: return "logger";
        case HandleKind::PolicyUri: return "policy uri";
        case HandleKind::PolicyBag: return "policy bag";
        case HandleKind::PolicyIterator: return "policy iterator";
        case HandleKind::MessageBus: return "message bus";
        case HandleKind::UpdaterEvent: return "updater event";
    }
    return "unknown";
}

}  // namespace simulator
