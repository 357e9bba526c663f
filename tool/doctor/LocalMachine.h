#pragma once

#include <string>

#include "base/UniqueHandle.h"

namespace tool::doctor {

// While it lives, HKEY_LOCAL_MACHINE of this process is a key of the current user's. Nothing of the machine's is
// changed by that.
class LocalMachine {
public:
    // `subkey` is below HKEY_CURRENT_USER. Empty: the machine's own stays. Throws std::runtime_error when there is no
    // such key.
    explicit LocalMachine(const std::string& subkey);
    ~LocalMachine();
    LocalMachine(const LocalMachine&) = delete;
    LocalMachine& operator=(const LocalMachine&) = delete;

private:
    bridge::UniqueKey key;
};

}  // namespace tool::doctor
