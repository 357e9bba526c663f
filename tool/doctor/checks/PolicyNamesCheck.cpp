#include "tool/doctor/checks/PolicyNamesCheck.h"

#include <fmt/format.h>

#include "policy/PolicyKey.h"
#include "tool/doctor/Groups.h"
#include "tool/doctor/SystemTexts.h"

namespace tool::doctor {

Check CheckPolicyNames() {
    constexpr char name[] = "the key of the policies' names";
    constexpr char key[] = R"(HKEY_LOCAL_MACHINE\SOFTWARE\Corvane\Endpoint\AV)";
    bridge::PolicyKey policies;
    const LSTATUS error = policies.Open();
    if (error == ERROR_SUCCESS) {
        return Good(registryGroup, name, {key});
    }
    if (error == ERROR_FILE_NOT_FOUND) {
        return Note(registryGroup, name,
                    {fmt::format("{} is not there: the names of policies are not recorded. The endpoint product makes "
                                 "it, never the bridge",
                                 key)});
    }
    return Note(registryGroup, name,
                {fmt::format("{} may not be written by this user (error {}, {}): a product with no more rights records "
                             "no names of policies",
                             key, error, SystemText(static_cast<DWORD>(error)))});
}

}  // namespace tool::doctor
