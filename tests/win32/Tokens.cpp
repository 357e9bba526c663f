#include "win32/tokens.h"

#include <memory>

#include "Handles.h"
#include "win32/process.h"

using win32::AnswerOr;
using win32::Failure;

namespace {

class Token final : public win32::Object {};

constexpr DWORD sessionOfUser = 1;
constexpr DWORD attributesOfIntegrity = 0x60;

template <class Information>
Information* Place(LPVOID information, DWORD size, DWORD* needed) {
    *needed = sizeof(Information);
    if (size < sizeof(Information)) {
        throw Failure{ERROR_INSUFFICIENT_BUFFER};
    }
    return static_cast<Information*>(information);
}

// The label, and behind it what it points to.
struct IntegrityLabel {
    TOKEN_MANDATORY_LABEL label;
    SID identifier;
};

}  // namespace

BOOL OpenProcessToken(HANDLE process, DWORD access, HANDLE* token) {
    return AnswerOr(FALSE, "OpenProcessToken", [&] {
        win32::Support(process == GetCurrentProcess() && access == TOKEN_QUERY, "this access to this process's token");
        *token = win32::OpenHandle(std::make_shared<Token>());
        return TRUE;
    });
}

BOOL GetTokenInformation(HANDLE token, TOKEN_INFORMATION_CLASS kind, LPVOID information, DWORD size, LPDWORD needed) {
    return AnswerOr(FALSE, "GetTokenInformation", [&] {
        win32::ObjectOf<Token>(token);
        switch (kind) {
            case TokenSessionId: *Place<DWORD>(information, size, needed) = sessionOfUser; break;
            case TokenElevation: *Place<TOKEN_ELEVATION>(information, size, needed) = {0}; break;
            case TokenIntegrityLevel: {
                auto* const integrity = Place<IntegrityLabel>(information, size, needed);
                integrity->identifier = {1, 1, {{0, 0, 0, 0, 0, 16}}, {SECURITY_MANDATORY_MEDIUM_RID}};
                integrity->label = {{&integrity->identifier, attributesOfIntegrity}};
                break;
            }
            default: win32::NotSupported("this information about a token");
        }
        return TRUE;
    });
}
