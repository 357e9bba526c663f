#include "soak/ExportCalls.h"

#include <mutex>

namespace {

std::mutex callsLock;

// Its elements stay where they are.
std::map<std::string_view, std::atomic<uint64_t>>& CountedCalls() {
    static std::map<std::string_view, std::atomic<uint64_t>> calls;
    return calls;
}

}  // namespace

std::atomic<uint64_t>& CallsOf(std::string_view exportName) {
    const std::lock_guard guard(callsLock);
    return CountedCalls()[exportName];
}

std::map<std::string_view, uint64_t> AllCalls() {
    const std::lock_guard guard(callsLock);
    return {CountedCalls().begin(), CountedCalls().end()};
}

// One function under the names that two compilers give it.
void CallRelease(VsKitMsgbus::lpc_buffer& buffer) {
    static std::atomic<uint64_t>& calls = CallsOf("_ZN11VsKitMsgbus10lpc_buffer7ReleaseEv");
    static std::atomic<uint64_t>& callsByTheOtherName = CallsOf("?Release@lpc_buffer@VsKitMsgbus@@QEAAXXZ");
    ++calls;
    ++callsByTheOtherName;
    buffer.Release();
}
