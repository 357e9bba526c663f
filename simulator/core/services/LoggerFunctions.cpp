// Printing through a logger.
#include <cstdio>
#include <string>

#include "base/Attributes.h"
#include "simulator/core/frame/Simulate.h"
#include "simulator/core/handles/HandleTable.h"
#include "simulator/core/ny_core.h"
#include "simulator/core/services/Logger.h"

using namespace simulator;

namespace {

LIKE_PRINTF(1, 0) std::string Format(const char* format, va_list arguments) {
    va_list again{};
    va_copy(again, arguments);
    const int length = std::vsnprintf(nullptr, 0, format, arguments);
    std::string text;
    if (length > 0) {
        text.resize(static_cast<size_t>(length));
        std::vsnprintf(text.data(), text.size() + 1, format, again);
    }
    va_end(again);
    Require(length >= 0);
    return text;
}

std::string OrEmpty(const char* text) {
    return text == nullptr ? std::string() : std::string(text);
}

}  // namespace

LIKE_PRINTF(7, 0)
int32_t ny_core_log_v(ny_logger_t* logger, uint32_t severity, const char* module, const char* file, uint32_t line,
                      const char* function, const char* format, va_list arguments) {
    return Simulate("ny_log_v", [&] {
        const auto target = Handles().Get(logger);
        Require(format != nullptr);
        target->Add(std::to_string(severity) + '|' + OrEmpty(module) + '|' + OrEmpty(file) + '|' +
                    std::to_string(line) + '|' + OrEmpty(function) + '|' + Format(format, arguments));
    });
}
