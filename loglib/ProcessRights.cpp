#include "loglib/ProcessRights.h"

#include <windows.h>

#include <cstddef>

#include "base/UniqueHandle.h"

namespace bridge {

namespace {

constexpr DWORD sessionOfServices = 0;

// Null when the process must not look at it.
UniqueHandle OpenToken() noexcept {
    HANDLE token = nullptr;
    return UniqueHandle(::OpenProcessToken(::GetCurrentProcess(), TOKEN_QUERY, &token) ? token : nullptr);
}

template <class Information>
bool Read(const UniqueHandle& token, TOKEN_INFORMATION_CLASS kind, Information& into) noexcept {
    DWORD length = 0;
    return token != nullptr && ::GetTokenInformation(token.get(), kind, &into, sizeof into, &length);
}

// With room for the identifier that the label points to.
struct IntegrityLabel {
    TOKEN_MANDATORY_LABEL label;
    std::byte identifier[SECURITY_MAX_SID_SIZE];
};

// The last number of the identifier is the level.
DWORD LevelOf(const IntegrityLabel& integrity) noexcept {
    const auto* const identifier = static_cast<const SID*>(integrity.label.Label.Sid);
    return identifier->SubAuthority[identifier->SubAuthorityCount - 1];
}

}  // namespace

bool HasHigherRights() noexcept {
    const UniqueHandle token = OpenToken();
    TOKEN_ELEVATION elevation{};
    DWORD session = sessionOfServices;
    IntegrityLabel integrity{};
    if (!Read(token, TokenElevation, elevation) || !Read(token, TokenSessionId, session) ||
        !Read(token, TokenIntegrityLevel, integrity)) {
        return true;
    }
    return elevation.TokenIsElevated != 0 || session == sessionOfServices ||
           LevelOf(integrity) > DWORD{SECURITY_MANDATORY_MEDIUM_RID};
}

}  // namespace bridge
