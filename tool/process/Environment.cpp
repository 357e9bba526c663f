#include "tool/process/Environment.h"

#include <windows.h>

namespace tool {

Environment::Environment(const Variables& variables) {
    for (const auto& [name, value] : variables) {
        std::wstring former(::GetEnvironmentVariableW(name.c_str(), nullptr, 0), L'\0');
        const bool wasSet = !former.empty();
        former.resize(::GetEnvironmentVariableW(name.c_str(), former.data(), static_cast<DWORD>(former.size())));
        before.push_back({name, former, wasSet});
        ::SetEnvironmentVariableW(name.c_str(), value.c_str());
    }
}

Environment::~Environment() {
    for (const Former& former : before) {
        ::SetEnvironmentVariableW(former.name.c_str(), former.wasSet ? former.value.c_str() : nullptr);
    }
}

}  // namespace tool
