// The agent locator: the runtime path in the registry, and the libraries that are opened by it.
#include <optional>

#include "dispatcher/Dispatcher.h"
#include "dispatcher/RuntimePath.h"
#include "fuzz/FuzzedAgent.h"
#include "fuzz/FuzzedRegistry.h"
#include "win32_faults.h"

using namespace bridge;

namespace {

constexpr size_t longestPath = 512;
constexpr unsigned mostRounds = 6;

int32_t ReadLine(uint32_t /*severity*/, const char* module, const char* message, void* /*userData*/) {
    Touch(module);
    Touch(message);
    return NY_OK;
}

// The path in the registry's value: its bytes up to the first zero. None when it is longer than any path.
std::optional<std::string> ExpectedPath(const FuzzedRegistryValue& value) {
    if (!value.IsThere() || value.Bytes().size() > longestPath) {
        return std::nullopt;
    }
    return std::string(value.Bytes().c_str());
}

void ExpectLookUp(const FuzzedRegistryValue& value, const char* product) {
    std::optional<std::string> path = "before";
    const int32_t result = LookUpRuntimePath(product, path);
    if (result != (ExpectedPath(value) ? int32_t{NY_OK} : int32_t{NY_RUNTIME_PATH_MISSING}) ||
        path != ExpectedPath(value)) {
        Found("a runtime path that is not the registry's");
    }
}

// A dispatcher that has no path opens the bare name.
void ExpectLoad(FuzzedAgent& agent, const FuzzedRegistryValue& value, const char* product) {
    static const char* const names[] = {"ny_info_get", "not there"};
    const std::string library = agent.input.Text().c_str();
    TablePointer table = nullptr;
    uint32_t version = 0;
    agent.hasLibraries = !agent.input.Rarely();
    agent.openedPath.clear();
    Dispatcher* dispatcher = nullptr;
    DispatcherCreate(nullptr, &dispatcher);
    DispatcherSetLogSink(dispatcher, {&ReadLine, nullptr});
    const ExactText<char> group(agent.input, agent.input.Text());
    const LoadRequest request{group.Get(), product, library.c_str(), &version, names, &table, std::size(names)};
    const bool isLoaded = DispatcherLoad(request) == NY_OK;
    const auto path = ExpectedPath(value);
    if (agent.openedPath != (path ? *path + "\\" + library : library)) {
        Found("a library that is opened by another path");
    }
    if (isLoaded != agent.hasLibraries || isLoaded != (table.load() != nullptr)) {
        Found("a load whose answer is wrong");
    }
    DispatcherUnload(product, library.c_str());
    DispatcherRelease(dispatcher);
    if (table.load() != nullptr) {
        Found("a table of a library that is closed");
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    FuzzInput input(data, size);
    FuzzedAgent agent(input);
    // No key below others: a name that is a path would be a key of its own.
    std::string product = input.Text().c_str();
    std::erase(product, '\\');
    product.insert(0, 1, 'P');
    FuzzedRegistryValue value("Software\\Corvane\\Agent\\Applications\\" + product, "RuntimeSdkPath64",
                              KEY_WOW64_32KEY);
    for (unsigned round = 0; round < mostRounds && (round == 0 || !input.IsOver()); ++round) {
        value.Change(input);
        ExpectLookUp(value, product.c_str());
        ExpectLoad(agent, value, product.c_str());
    }
    if (win32::OpenRegistryKeys() != 0) {
        Found("a registry key that stays open");
    }
    return 0;
}
