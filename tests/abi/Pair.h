#pragma once

#include <cstdlib>
#include <stdexcept>
#include <string>

// Which C++ ABI the module and the bridge of this process have, each "gnu" or "microsoft", as the test was started for:
// see docs/TESTING.md for what which pair promises.
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
