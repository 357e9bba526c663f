#pragma once

#include <memory>
#include <string>

#include "Registry.h"

namespace simulator {

// While it lives, HKEY_LOCAL_MACHINE of this process is an empty key of the current user's, both views of it alike: no
// administrator is needed, and programs that run side by side do not see each other. One at a time in a process.
class RegistryRedirect {
public:
    // Throws std::system_error.
    RegistryRedirect();
    // Undoes the redirection and deletes the key with everything that was written.
    ~RegistryRedirect();
    RegistryRedirect(const RegistryRedirect&) = delete;
    RegistryRedirect& operator=(const RegistryRedirect&) = delete;

    // Where that key is below HKEY_CURRENT_USER.
    const std::string& Path() const { return path; }

private:
    std::string path;
    std::unique_ptr<RegistryKey> root;
};

}  // namespace simulator
