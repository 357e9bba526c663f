#pragma once

#include <windows.h>

#include <string>

#include "fuzz/FuzzInput.h"

// One value of the registry whose type and bytes are the input's: texts without a terminator, with zeros in them, of
// the wrong type or as long as no reader expects; or that is not there, as little as its key.
class FuzzedRegistryValue {
public:
    // `view` is 0 or KEY_WOW64_32KEY.
    FuzzedRegistryValue(std::string keyPath, std::string valueName, REGSAM keyView);
    // Deletes the key.
    ~FuzzedRegistryValue();
    FuzzedRegistryValue(const FuzzedRegistryValue&) = delete;
    FuzzedRegistryValue& operator=(const FuzzedRegistryValue&) = delete;

    void Change(FuzzInput& input);

    // The bytes that are there now.
    const std::string& Bytes() const noexcept { return bytes; }
    bool IsThere() const noexcept { return isThere; }

private:
    void DeleteKey();

    const std::string path;
    const std::string name;
    const REGSAM view;
    std::string bytes;
    bool isThere = false;
};
