// ny_logger.dll.
#include "ny_agent.h"
#include "simulator/core/ny_core.h"

int32_t ny_log_v(ny_logger_t* logger, uint32_t severity, const char* module, const char* file, uint32_t line,
                 const char* function, const char* format, va_list arguments) {
    return ny_core_log_v(logger, severity, module, file, line, function, format, arguments);
}
