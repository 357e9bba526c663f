#include "tool/doctor/LocalMachine.h"

#include <fmt/format.h>

#include <stdexcept>

#include "checking/Texts.h"
#include "tool/doctor/SystemTexts.h"

namespace tool::doctor {

LocalMachine::LocalMachine(const std::string& subkey) {
    if (subkey.empty()) {
        return;
    }
    HKEY opened = nullptr;
    LSTATUS status = ::RegOpenKeyExW(HKEY_CURRENT_USER, checking::Wide(subkey).c_str(), 0, MAXIMUM_ALLOWED, &opened);
    key.reset(status == ERROR_SUCCESS ? opened : nullptr);
    if (status == ERROR_SUCCESS) {
        status = ::RegOverridePredefKey(HKEY_LOCAL_MACHINE, opened);
    }
    if (status != ERROR_SUCCESS) {
        throw std::runtime_error(fmt::format("--local-machine: HKEY_CURRENT_USER\\{} cannot be used: {}", subkey,
                                             SystemText(static_cast<DWORD>(status))));
    }
}

LocalMachine::~LocalMachine() {
    if (key != nullptr) {
        ::RegOverridePredefKey(HKEY_LOCAL_MACHINE, nullptr);
    }
}

}  // namespace tool::doctor
