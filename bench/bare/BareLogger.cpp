// ny_logger.dll of the bare agent.
#include "agent/ny_agent.h"

int32_t ny_log_v(ny_logger_t* /*logger*/, uint32_t /*severity*/, const char* /*module*/, const char* /*file*/,
                 uint32_t /*line*/, const char* /*function*/, const char* /*format*/, va_list /*arguments*/) {
    return NY_OK;
}
