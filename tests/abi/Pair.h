#pragma once

#include <cstdlib>
#include <stdexcept>
#include <string>

// The C++ ABIs of the module and of the bridge in this process, each "gnu" or "microsoft", as ABI_PAIR names them.
// docs/TESTING.md says what each pair promises.
struct Pair {
    std::string module;
    std::string bridge;

    // Whether both have the same C++ library.
    bool SharesLibrary() const { return module == bridge; }
};

// From the environment variable ABI_PAIR, "MODULE-BRIDGE".
inline Pair ThisPair() {
    const char* const text = std::getenv("ABI_PAIR");
    const std::string pair = text != nullptr ? text : "";
    const size_t dash = pair.find('-');
    if (dash == std::string::npos) {
        throw std::runtime_error("ABI_PAIR must say which module and which bridge: gnu-microsoft");
    }
    return {pair.substr(0, dash), pair.substr(dash + 1)};
}
