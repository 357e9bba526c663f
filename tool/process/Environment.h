#pragma once

#include <string>
#include <utility>
#include <vector>

namespace tool {

// Variables of this process's environment, which the processes that it starts inherit, while this lives.
class Environment {
public:
    using Variables = std::vector<std::pair<std::wstring, std::wstring>>;

    explicit Environment(const Variables& variables);
    // Sets the variables back to what they were before.
    ~Environment();
    Environment(const Environment&) = delete;
    Environment& operator=(const Environment&) = delete;

private:
    struct Former {
        std::wstring name;
        std::wstring value;
        bool wasSet;
    };
    std::vector<Former> before;
};

}  // namespace tool
