// Where a crash inside the DLL is. tests/package/crash-address.sh asks the symbols beside the DLL what stands there.
#include <cinttypes>
#include <cstdio>
#include <cstdlib>

#include "VsMsgbus/ny_temp_buffer.h"
#include "library/LoadedBridge.h"

namespace {

HMODULE crashing = nullptr;

LONG NTAPI PrintAddress(EXCEPTION_POINTERS* raised) {
    const auto address = reinterpret_cast<uintptr_t>(raised->ExceptionRecord->ExceptionAddress);
    std::printf("crash at VsMsgbus.dll+0x%" PRIxPTR "\n", address - reinterpret_cast<uintptr_t>(crashing));
    std::fflush(stdout);
    std::_Exit(0);
}

TEST(PlantedCrash, DISABLED_InsideTempBufferCapacity) {
    const LoadedBridge bridge;
    crashing = bridge.Module();
    ::AddVectoredExceptionHandler(TRUE, &PrintAddress);
    const auto capacity = bridge.Export<decltype(ny_temp_buffer_capacity)>("ny_temp_buffer_capacity");
    capacity(reinterpret_cast<const ny_temp_buffer_t*>(1));
}

}  // namespace
