// A module that answers the agent when it asks for the product's properties.
#include <cstdio>
#include <exception>
#include <optional>

#include <vsmsgbus.hpp>

#include "MyModule.h"

namespace {

std::optional<vsmsgbus::Product> product;

// Called on a thread of the agent's.
void Tell(vsmsgbus::Properties& properties) {
    properties.Set("General", "Version", "1.0");
    properties.Set("General", "State", "running");
}

// Takes the lines of the bridge and of the agent.
void Log(int /*level*/, std::wstring_view line) {
    std::fprintf(stderr, "%s\n", vsmsgbus::Utf8(line).c_str());
}

}  // namespace

// The host calls these two; never call the bridge from DllMain.
bool MyModuleLoad() {
    try {
        product.emplace(myProductId, vsmsgbus::Handlers{.properties = Tell, .log = Log});
        return true;
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "%s\n", failure.what());
        return false;
    }
}

bool MyModuleUnload() {
    // Afterwards no thread of the agent's is inside the handlers, so that the module may go.
    return !product || product->Leave();
}
