#include "RegistryRedirect.h"

#include <atomic>
#include <system_error>

namespace simulator {

namespace {

std::string UniquePath() {
    static std::atomic<unsigned> counter = 0;
    return "Software\\SimulatedAgent-" + std::to_string(GetCurrentProcessId()) + "-" + std::to_string(++counter);
}

}  // namespace

RegistryRedirect::RegistryRedirect() : path(UniquePath()) {
    // A process that had the same id may have died without cleaning up.
    DeleteRegistryTree(HKEY_CURRENT_USER, path, 0);
    root = std::make_unique<RegistryKey>(HKEY_CURRENT_USER, path, KEY_ALL_ACCESS);
    CheckRegistry(RegOverridePredefKey(HKEY_LOCAL_MACHINE, root->Get()), "cannot redirect HKEY_LOCAL_MACHINE");
}

RegistryRedirect::~RegistryRedirect() {
    RegOverridePredefKey(HKEY_LOCAL_MACHINE, nullptr);
    root.reset();
    try {
        DeleteRegistryTree(HKEY_CURRENT_USER, path, 0);
    } catch (const std::system_error&) {
        // A thread still holds a key of it open; the next process with this id deletes it.
    }
}

}  // namespace simulator
