#include <cstdlib>

#include "VsMsgbus/LpcBuffer.h"

namespace VsKitMsgbus {

void lpc_buffer::Release() noexcept {
    if (data != nullptr && kind != Empty) {
        std::free(data);
    }
    *this = lpc_buffer{};
}

}  // namespace VsKitMsgbus
