// Group "ny_logger" of ny_logger.dll.
#pragma once

#include <cstdarg>

#include "dispatcher/EntryPoint.h"

namespace bridge {

// In slot order.
inline constexpr NameTable<12> loggerNames = {
    "ny_log_v",
    "ny_wlog_v",
    "ny_logger_inc_ref",
    "ny_logger_dec_ref",
    "ny_logger_add_filter",
    "ny_logger_remove_filter",
    "ny_logger_get_filter",
    "ny_generic_log_filter_create",
    "ny_logger_register_visitor",
    "ny_logger_register_localizer",
    "ny_logger_unregister_visitor",
    "ny_logger_unregister_localizer",
};

namespace {
constinit Group loggerGroup{"ny_logger", "ny_logger.dll", loggerNames.data(), loggerNames.size()};
}

namespace agent {

constexpr EntryPoint<&::ny_log_v, loggerNames, loggerGroup> ny_log_v{};

// The agent's logging function with its arguments spelled out.
[[maybe_unused]] static inline int32_t ny_log(ny_logger_t* logger, uint32_t severity, const char* module,
                                              const char* file, uint32_t line, const char* function, const char* format,
                                              ...) {
    va_list arguments{};
    va_start(arguments, format);
    const int32_t result = ny_log_v(logger, severity, module, file, line, function, format, arguments);
    va_end(arguments);
    return result;
}

}  // namespace agent

}  // namespace bridge
