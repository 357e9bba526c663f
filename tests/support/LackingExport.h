#pragma once

#include <filesystem>
#include <string>
#include <vector>

// While it lives, the agent's libraries in those folders do not export the function of that name: in the files, one
// letter of the name is another one. For libraries that are loaded nowhere. Throws std::runtime_error when no library
// exports the function, or none of the names that it could be given is free.
class LackingExport {
public:
    LackingExport(const std::vector<std::filesystem::path>& folders, const std::string& function);
    ~LackingExport();
    LackingExport(const LackingExport&) = delete;
    LackingExport& operator=(const LackingExport&) = delete;

private:
    struct Change {
        std::filesystem::path file;
        std::string original;
    };

    std::vector<Change> changes;
};
