#pragma once

#include <windows.h>

#include <cstring>
#include <optional>
#include <stdexcept>
#include <string>

#include "support/ModuleImports.h"
#include "support/SystemFunction.h"

// While it lives, code that asks for this process's token gets the values below: an ordinary program's, unless the test
// changes them. The real one differs from machine to machine, and is elevated under Wine. One at a time.
class TokenOfProcess {
public:
    // Answers this program's own code.
    TokenOfProcess() : TokenOfProcess(FindImport(reinterpret_cast<void*>(&::GetTokenInformation))) {}
    // Answers the code of the library with that file name.
    explicit TokenOfProcess(const char* library) : TokenOfProcess(FindImportOf(library)) {}
    ~TokenOfProcess() { SetImport(import, original); }
    TokenOfProcess(const TokenOfProcess&) = delete;
    TokenOfProcess& operator=(const TokenOfProcess&) = delete;

    bool isElevated = false;
    DWORD session = 1;
    DWORD integrity = SECURITY_MANDATORY_MEDIUM_RID;
    std::optional<TOKEN_INFORMATION_CLASS> refused;

private:
    explicit TokenOfProcess(void** place) : import(place), original(*place) {
        current = this;
        SetImport(import, reinterpret_cast<void*>(&Answer));
    }

    static void** FindImportOf(const char* library) {
        for (const ModuleImport& imported : ImportsOf(library)) {
            if (imported.function == "GetTokenInformation") {
                return imported.slot;
            }
        }
        throw std::logic_error(std::string(library) + " does not ask for a token's information");
    }

    static WINBOOL WINAPI Answer(HANDLE /*token*/, TOKEN_INFORMATION_CLASS kind, LPVOID information, DWORD /*size*/,
                                 LPDWORD /*needed*/) {
        if (current->refused == kind) {
            ::SetLastError(ERROR_ACCESS_DENIED);
            return FALSE;
        }
        const auto put = [information](auto value) { std::memcpy(information, &value, sizeof value); };
        switch (kind) {
            case TokenElevation: put(TOKEN_ELEVATION{current->isElevated ? DWORD{1} : DWORD{0}}); break;
            case TokenSessionId: put(current->session); break;
            case TokenIntegrityLevel:
                current->identifier.SubAuthorityCount = 1;
                current->identifier.SubAuthority[0] = current->integrity;
                put(TOKEN_MANDATORY_LABEL{{&current->identifier, 0}});
                break;
            default: throw std::logic_error("another information about the token");
        }
        return TRUE;
    }

    static inline TokenOfProcess* current = nullptr;
    SID identifier{};
    void** const import;
    void* const original;
};
