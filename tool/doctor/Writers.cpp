#include "tool/doctor/Writers.h"

#include <aclapi.h>
#include <fmt/format.h>
#include <sddl.h>

#include <algorithm>
#include <memory>

#include "checking/Texts.h"
#include "tool/doctor/SystemTexts.h"

namespace tool::doctor {

namespace {

struct LocalFreer {
    void operator()(void* memory) const { ::LocalFree(memory); }
};
using LocalMemory = std::unique_ptr<void, LocalFreer>;

constexpr DWORD writingKey = KEY_SET_VALUE | KEY_CREATE_SUB_KEY | WRITE_DAC | WRITE_OWNER | GENERIC_WRITE | GENERIC_ALL;
constexpr DWORD writingFolder =
    FILE_ADD_FILE | FILE_ADD_SUBDIRECTORY | FILE_DELETE_CHILD | WRITE_DAC | WRITE_OWNER | GENERIC_WRITE | GENERIC_ALL;

std::string NumberOf(PSID sid) {
    LPWSTR text = nullptr;
    if (::ConvertSidToStringSidW(sid, &text) == FALSE) {
        return "?";
    }
    const LocalMemory memory(text);
    return checking::Narrow(text);
}

std::string NameOf(PSID sid) {
    wchar_t name[256] = {};
    wchar_t domain[256] = {};
    DWORD nameSize = std::size(name);
    DWORD domainSize = std::size(domain);
    SID_NAME_USE use{};
    if (::LookupAccountSidW(nullptr, sid, name, &nameSize, domain, &domainSize, &use) == FALSE) {
        return NumberOf(sid);
    }
    const std::string account = checking::Narrow(name);
    return domain[0] != L'\0' ? checking::Narrow(domain) + "\\" + account : account;
}

// The administrators, the system, the placeholder for the creator of a key or file below, and the service that installs
// the system.
bool IsAdministrator(PSID sid) {
    constexpr const char* installer = "S-1-5-80-956008885-3418522649-1831038044-1853292631-2271478464";
    return ::IsWellKnownSid(sid, WinBuiltinAdministratorsSid) != FALSE ||
           ::IsWellKnownSid(sid, WinLocalSystemSid) != FALSE || ::IsWellKnownSid(sid, WinCreatorOwnerSid) != FALSE ||
           NumberOf(sid) == installer;
}

void Add(Writers& writers, PSID sid) {
    std::string name = NameOf(sid);
    writers.areAdministrators = writers.areAdministrators && IsAdministrator(sid);
    if (std::find(writers.names.begin(), writers.names.end(), name) == writers.names.end()) {
        writers.names.push_back(std::move(name));
    }
}

Writers Read(PSID owner, PACL list, DWORD writing) {
    Writers writers;
    if (owner != nullptr) {
        Add(writers, owner);
    }
    if (list == nullptr) {
        writers.names.emplace_back("everybody (there is no access list)");
        writers.areAdministrators = false;
        return writers;
    }
    for (DWORD i = 0; i < list->AceCount; ++i) {
        void* entry = nullptr;
        if (::GetAce(list, i, &entry) == FALSE) {
            continue;
        }
        auto* const allowed = static_cast<ACCESS_ALLOWED_ACE*>(entry);
        // One for what is below alone does not speak of this.
        const bool isOfThis = (allowed->Header.AceFlags & INHERIT_ONLY_ACE) == 0;
        if (isOfThis && allowed->Header.AceType == ACCESS_ALLOWED_ACE_TYPE && (allowed->Mask & writing) != 0) {
            Add(writers, &allowed->SidStart);
        }
    }
    return writers;
}

constexpr SECURITY_INFORMATION wanted = OWNER_SECURITY_INFORMATION | DACL_SECURITY_INFORMATION;

Writers Unknown(DWORD error) {
    Writers writers;
    writers.error = error;
    writers.areAdministrators = false;
    return writers;
}

}  // namespace

std::string Writers::Text() const {
    if (error != ERROR_SUCCESS) {
        return fmt::format("who may change it cannot be read: error {}, {}", error, SystemText(error));
    }
    const char* const warning =
        areAdministrators ? "" : ". Who is no administrator and may change it can have code run in the product";
    return fmt::format("may be changed by {}{}", fmt::join(names, ", "), warning);
}

Writers WritersOf(HKEY key) {
    PSID owner = nullptr;
    PACL list = nullptr;
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    const DWORD error = ::GetSecurityInfo(key, SE_REGISTRY_KEY, wanted, &owner, nullptr, &list, nullptr, &descriptor);
    const LocalMemory memory(descriptor);
    return error == ERROR_SUCCESS ? Read(owner, list, writingKey) : Unknown(error);
}

Writers WritersOf(const std::filesystem::path& folder) {
    PSID owner = nullptr;
    PACL list = nullptr;
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    const DWORD error = ::GetNamedSecurityInfoW(const_cast<wchar_t*>(folder.c_str()), SE_FILE_OBJECT, wanted, &owner,
                                                nullptr, &list, nullptr, &descriptor);
    const LocalMemory memory(descriptor);
    return error == ERROR_SUCCESS ? Read(owner, list, writingFolder) : Unknown(error);
}

}  // namespace tool::doctor
