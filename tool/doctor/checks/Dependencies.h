#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace tool::doctor {

// A library that is needed and cannot be had.
struct MissingDependency {
    std::string library;
    std::string why;  // "is found nowhere", ...
};

// The first library that the file, or a library that comes with it, needs at its loading and that is not found, or not
// one of this machine type. It is looked for as the system does for a library that is loaded by its whole path: in
// `folders`, whose libraries are looked into in turn, then where the system's own are and in PATH.
std::optional<MissingDependency> FindMissingDependency(const std::filesystem::path& file,
                                                       const std::vector<std::filesystem::path>& folders);

}  // namespace tool::doctor
