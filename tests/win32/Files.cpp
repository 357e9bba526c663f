#include "win32/files.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>

#include "Handles.h"
#include "Text.h"

using win32::AnswerOr;
using win32::Failure;

namespace {

constexpr mode_t readAndWrite = 0644;

class File final : public win32::Object {
public:
    explicit File(int openDescriptor) : descriptor(openDescriptor) {}
    ~File() override { ::close(descriptor); }

    const int descriptor;
};

// Why the file could not be opened. It would have been made, so what is missing is its folder.
LONG ErrorOfPath() {
    switch (errno) {
        case ENOENT:
        case ENOTDIR: return ERROR_PATH_NOT_FOUND;
        case ENAMETOOLONG: return ERROR_FILENAME_EXCED_RANGE;
        case EACCES:
        case EISDIR:
        case EROFS: return ERROR_ACCESS_DENIED;
        default: win32::NotSupported("this reason for not opening a file");
    }
}

}  // namespace

HANDLE CreateFileW(LPCWSTR path, DWORD access, DWORD sharing, LPSECURITY_ATTRIBUTES /*security*/, DWORD disposition,
                   DWORD attributes, HANDLE templateFile) {
    constexpr DWORD withAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    win32::Support(access == FILE_APPEND_DATA && sharing == withAll && disposition == OPEN_ALWAYS &&
                       attributes == FILE_ATTRIBUTE_NORMAL && templateFile == nullptr,
                   "files that are not logs");
    return AnswerOr<HANDLE>(INVALID_HANDLE_VALUE, "CreateFileW", [&] {
        std::string text = win32::Narrow(path != nullptr ? path : L"");
        std::replace(text.begin(), text.end(), '\\', '/');
        std::error_code ignored;
        const bool isThere = std::filesystem::exists(text, ignored);
        const int descriptor = ::open(text.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, readAndWrite);
        if (descriptor < 0) {
            throw Failure{ErrorOfPath()};
        }
        SetLastError(static_cast<DWORD>(isThere ? ERROR_ALREADY_EXISTS : ERROR_SUCCESS));
        return win32::OpenHandle(std::make_shared<File>(descriptor));
    });
}

BOOL WriteFile(HANDLE file, const void* data, DWORD size, LPDWORD written, LPOVERLAPPED overlapped) {
    win32::Support(overlapped == nullptr && written != nullptr, "overlapped writing");
    *written = 0;
    return AnswerOr(FALSE, "WriteFile", [&] {
        const ssize_t result = ::write(win32::ObjectOf<File>(file)->descriptor, data, size);
        if (result < 0) {
            throw Failure{ERROR_DISK_FULL};
        }
        *written = static_cast<DWORD>(result);
        return TRUE;
    });
}
