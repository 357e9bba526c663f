#include "tool/process/ThisProgram.h"

#include <windows.h>

#include <stdexcept>

#include "tool/text/Utf8.h"

namespace tool {

std::filesystem::path PathOfThisProgram() {
    std::wstring name(MAX_PATH, L'\0');
    for (;;) {
        const DWORD length = ::GetModuleFileNameW(nullptr, name.data(), static_cast<DWORD>(name.size()));
        if (length < name.size()) {
            name.resize(length);
            return name;
        }
        name.resize(2 * name.size());
    }
}

std::filesystem::path FindDll(const wchar_t* name, std::initializer_list<const wchar_t*> candidates) {
    const std::filesystem::path folder = PathOfThisProgram().parent_path();
    std::string looked;
    for (const wchar_t* const candidate : candidates) {
        const std::filesystem::path file = (folder / candidate / name).lexically_normal();
        if (std::filesystem::exists(file)) {
            return file;
        }
        looked += (looked.empty() ? "" : ", ") + Utf8(file.parent_path());
    }
    throw std::runtime_error(Utf8(name) + " is not there; looked in " + looked);
}

}  // namespace tool
