#include "tool/play/player/Channel.h"

#include <windows.h>

#include <cstdio>
#include <cstring>

namespace tool::play {

namespace {

HANDLE crashPipe = nullptr;

// Room for a file's name and a few numbers.
constexpr size_t crashRoom = 512;

// The file of the address, without its folder; what JSON would have to escape is left out.
void NameOfFile(const void* address, char* name, size_t room, uintptr_t& offset) {
    HMODULE file = nullptr;
    char path[MAX_PATH] = {};
    std::snprintf(name, room, "unknown code");
    if (::GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                             static_cast<const char*>(address), &file) != FALSE &&
        ::GetModuleFileNameA(file, path, sizeof path) != 0) {
        const char* const slash = std::strrchr(path, '\\');
        std::snprintf(name, room, "%s", slash != nullptr ? slash + 1 : path);
        offset = reinterpret_cast<uintptr_t>(address) - reinterpret_cast<uintptr_t>(file);
    }
}

// The heap may be broken: nothing is allocated.
LONG WINAPI OnCrash(EXCEPTION_POINTERS* exception) {
    const EXCEPTION_RECORD& record = *exception->ExceptionRecord;
    char file[128];
    uintptr_t offset = 0;
    NameOfFile(record.ExceptionAddress, file, sizeof file, offset);
    char line[crashRoom];
    const int length = std::snprintf(
        line, sizeof line, "{\"event\":\"crash\",\"code\":%lu,\"file\":\"%s\",\"offset\":%llu,\"thread\":%lu}\n",
        record.ExceptionCode, file, static_cast<unsigned long long>(offset), ::GetCurrentThreadId());
    DWORD written = 0;
    ::WriteFile(crashPipe, line, static_cast<DWORD>(length), &written, nullptr);
    ::TerminateProcess(::GetCurrentProcess(), record.ExceptionCode);
    return EXCEPTION_EXECUTE_HANDLER;
}

}  // namespace

void Channel::Send(const nlohmann::json& event) {
    const std::string line = event.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace) + '\n';
    const std::lock_guard guard(mutex);
    size_t done = 0;
    DWORD written = 0;
    while (done < line.size() &&
           ::WriteFile(pipe, line.data() + done, static_cast<DWORD>(line.size() - done), &written, nullptr) != FALSE) {
        done += written;
    }
}

void Channel::Tell(std::string_view who, std::string_view text) {
    Send({{"event", "line"}, {"who", who}, {"text", text}});
}

void Channel::TellOfCrashes() const {
    crashPipe = pipe;
    ::SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX | SEM_NOOPENFILEERRORBOX);
    ::SetUnhandledExceptionFilter(&OnCrash);
}

}  // namespace tool::play
