#include "simulator/core/client/Callbacks.h"

namespace simulator {

std::string TaskHandlerKey(std::string_view productId, const char* taskType) {
    std::string key(productId);
    if (taskType != nullptr) {
        // No product id holds a zero.
        key += '\0';
        key += taskType;
    }
    return key;
}

}  // namespace simulator
