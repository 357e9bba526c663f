#include "tool/doctor/SystemTexts.h"

#include "checking/Texts.h"
#include "tool/process/ThisProgram.h"

namespace tool::doctor {

std::string SystemText(DWORD error) {
    wchar_t text[512] = {};
    DWORD length = ::FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, error, 0, text,
                                    static_cast<DWORD>(std::size(text)), nullptr);
    while (length != 0 && (text[length - 1] == L'\n' || text[length - 1] == L'\r' || text[length - 1] == L'.')) {
        --length;
    }
    return length != 0 ? checking::Narrow(std::wstring_view(text, length)) : "of which the system has no text";
}

std::string Utf8OfAnsi(const std::string& text) {
    const int size = static_cast<int>(text.size());
    std::wstring wide(static_cast<size_t>(::MultiByteToWideChar(CP_ACP, 0, text.data(), size, nullptr, 0)), L'\0');
    ::MultiByteToWideChar(CP_ACP, 0, text.data(), size, wide.data(), static_cast<int>(wide.size()));
    return checking::Narrow(wide);
}

std::filesystem::path OwnFolder() {
    return PathOfThisProgram().parent_path();
}

}  // namespace tool::doctor
