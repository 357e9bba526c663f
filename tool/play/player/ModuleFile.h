#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace tool::play {

// A function that a module's functions for entering and leaving are given as a parameter. A module whose function takes
// no parameters never sees it; the sample module tells through it what it does. `actor` is "module" or "bridge".
using Say = void (*)(const char* actor, const char* line, void* userData);

// A module's file, loaded and called as its host would. Used on one thread, but for Call.
class ModuleFile {
public:
    explicit ModuleFile(std::filesystem::path modulePath) : path(std::move(modulePath)) {}

    // "MyModule.dll"
    std::string Name() const;
    bool IsLoaded() const noexcept { return handle != nullptr; }
    // Both throw vsmsgbus::testing::Failure when the system refuses.
    void Load();
    void Free();
    // The exported function whose name ends with `ending` in any case; "Load" does not find a name that ends with
    // "Unload". Empty when there is none. Throws Failure when there are several.
    std::string FindFunction(const std::string& ending) const;
    // Calls the exported function. Throws Failure when the module has none of that name, and when it throws.
    bool Call(const std::string& function, Say say, void* userData) const;

private:
    std::vector<std::string> Exports() const;

    const std::filesystem::path path;
    void* handle = nullptr;
};

}  // namespace tool::play
