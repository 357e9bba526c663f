#include "loglib/ProcessRights.h"

#include <windows.h>

#include <cstddef>

namespace {

constexpr DWORD sessionOfServices = 0;

class ProcessToken {
public:
    ProcessToken() noexcept {
        if (!::OpenProcessToken(::GetCurrentProcess(), TOKEN_QUERY, &handle)) {
            handle = nullptr;
        }
    }
    ~ProcessToken() {
        if (handle != nullptr) {
            ::CloseHandle(handle);
        }
    }
    ProcessToken(const ProcessToken&) = delete;
    ProcessToken& operator=(const ProcessToken&) = delete;

    template <class Information>
    bool Read(TOKEN_INFORMATION_CLASS kind, Information& into) const noexcept {
        DWORD length = 0;
        return handle != nullptr && ::GetTokenInformation(handle, kind, &into, sizeof into, &length);
    }

private:
    HANDLE handle = nullptr;
};

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
    const ProcessToken token;
    TOKEN_ELEVATION elevation{};
    DWORD session = sessionOfServices;
    IntegrityLabel integrity{};
    if (!token.Read(TokenElevation, elevation) || !token.Read(TokenSessionId, session) ||
        !token.Read(TokenIntegrityLevel, integrity)) {
        return true;
    }
    return elevation.TokenIsElevated != 0 || session == sessionOfServices ||
           LevelOf(integrity) > DWORD{SECURITY_MANDATORY_MEDIUM_RID};
}
