// Natively the bridge's libraries share the program's C++ runtime, which allocates on their behalf: for what the
// runtime allocates, the code that called the runtime decides.
#include "faults/BridgeMemory.h"

#include <dlfcn.h>
#include <unwind.h>

#include <cstdlib>
#include <new>
#include <string_view>

namespace {

constexpr char runtime[] = "libstdc++.so.6";

// The allocators' own allocations are no others.
thread_local bool isInside = false;

class Inside {
public:
    Inside() { isInside = true; }
    ~Inside() { isInside = false; }
    Inside(const Inside&) = delete;
    Inside& operator=(const Inside&) = delete;
};

std::string_view FileOfModuleAt(const void* address) {
    Dl_info info{};
    if (::dladdr(address, &info) == 0 || info.dli_fname == nullptr) {
        return {};
    }
    const std::string_view path = info.dli_fname;
    return path.substr(path.rfind('/') + 1);
}

// Follows the stack out of the runtime.
struct Search {
    bool isInRuntime = false;
    bool isBridge = false;
};

_Unwind_Reason_Code LookAtFrame(_Unwind_Context* frame, void* data) {
    auto& search = *static_cast<Search*>(data);
    const std::string_view file = FileOfModuleAt(reinterpret_cast<const void*>(_Unwind_GetIP(frame) - 1));
    if (file == runtime) {
        search.isInRuntime = true;
        return _URC_NO_REASON;
    }
    search.isBridge = file == "VsMsgbus.dll" || file == "LogLib.dll";
    return search.isInRuntime ? _URC_END_OF_STACK : _URC_NO_REASON;
}

bool IsRuntimeCalledByBridge() {
    Search search;
    ::_Unwind_Backtrace(LookAtFrame, &search);
    return search.isBridge;
}

enum class Caller { Bridge, Runtime };

template <Caller caller>
bool MustFail() {
    if (isInside || !IsCounting()) {
        return false;
    }
    const Inside inside;
    return (caller == Caller::Bridge || IsRuntimeCalledByBridge()) && IsRefused();
}

template <Caller caller>
void* Malloc(size_t size) {
    return MustFail<caller>() ? nullptr : std::malloc(size);
}

template <Caller caller>
void* Calloc(size_t count, size_t size) {
    return MustFail<caller>() ? nullptr : std::calloc(count, size);
}

template <Caller caller>
void* Realloc(void* memory, size_t size) {
    return MustFail<caller>() ? nullptr : std::realloc(memory, size);
}

template <Caller caller>
void* New(size_t size) {
    if (MustFail<caller>()) {
        throw std::bad_alloc();
    }
    const Inside inside;
    return ::operator new(size);
}

template <Caller caller>
void* NewArray(size_t size) {
    if (MustFail<caller>()) {
        throw std::bad_alloc();
    }
    const Inside inside;
    return ::operator new[](size);
}

template <Caller caller>
void* NewOrNull(size_t size, const std::nothrow_t& nothrow) noexcept {
    if (MustFail<caller>()) {
        return nullptr;
    }
    const Inside inside;
    return ::operator new(size, nothrow);
}

template <Caller caller>
void* NewArrayOrNull(size_t size, const std::nothrow_t& nothrow) noexcept {
    if (MustFail<caller>()) {
        return nullptr;
    }
    const Inside inside;
    return ::operator new[](size, nothrow);
}

template <Caller caller>
void AddReplacements(const char* library, std::vector<Replacement>& replacements) {
    replacements.push_back({library, "malloc", reinterpret_cast<void*>(&Malloc<caller>)});
    replacements.push_back({library, "calloc", reinterpret_cast<void*>(&Calloc<caller>)});
    replacements.push_back({library, "realloc", reinterpret_cast<void*>(&Realloc<caller>)});
    replacements.push_back({library, "_Znwm", reinterpret_cast<void*>(&New<caller>)});
    replacements.push_back({library, "_Znam", reinterpret_cast<void*>(&NewArray<caller>)});
    replacements.push_back({library, "_ZnwmRKSt9nothrow_t", reinterpret_cast<void*>(&NewOrNull<caller>)});
    replacements.push_back({library, "_ZnamRKSt9nothrow_t", reinterpret_cast<void*>(&NewArrayOrNull<caller>)});
}

}  // namespace

std::vector<Replacement> AllocatorReplacements() {
    std::vector<Replacement> replacements;
    AddReplacements<Caller::Bridge>("VsMsgbus.dll", replacements);
    AddReplacements<Caller::Bridge>("LogLib.dll", replacements);
    AddReplacements<Caller::Runtime>(runtime, replacements);
    return replacements;
}
