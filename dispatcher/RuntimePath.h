#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace bridge {

// Looks up the agent's runtime directory for a product (an agent software id such as "RDXAGENT3000"):
// HKEY_LOCAL_MACHINE\Software\Corvane\Agent\Applications\<product>, value "RuntimeSdkPath64", in the 32-bit view of the
// registry, because the agent's installer writes there on every system. A value of more than 512 bytes is not read.
//
// Returns NY_OK with the directory in `path`; NY_INVALID_ARGUMENT when product is null; NY_OUT_OF_MEMORY;
// NY_RUNTIME_PATH_MISSING when the key or the value cannot be read. On failure `path` is empty.
int32_t LookUpRuntimePath(const char* product, std::optional<std::string>& path) noexcept;

}  // namespace bridge
