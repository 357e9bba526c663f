// Control functions: loggers made for tests.
#include "ny_simulator.h"
#include "simulator/core/frame/Guarded.h"
#include "simulator/core/handles/HandleTable.h"
#include "simulator/core/services/Logger.h"

using namespace simulator;

int32_t ny_sim_logger_create(ny_logger_t** out) {
    return Guarded("ny_sim_logger_create", [&] {
        Require(out != nullptr);
        *out = Handles().Own<ny_logger_t>(std::make_shared<Logger>());
    });
}

void ny_sim_logger_release(ny_logger_t* logger) {
    static_cast<void>(Guarded("ny_sim_logger_release", [&] { Handles().Release(logger); }));
}

size_t ny_sim_logger_size(ny_logger_t* logger) {
    size_t size = 0;
    static_cast<void>(Guarded("ny_sim_logger_size", [&] { size = Handles().Get(logger)->Size(); }));
    return size;
}

int32_t ny_sim_logger_get(ny_logger_t* logger, size_t index, const char** line) {
    return Guarded("ny_sim_logger_get", [&] {
        const auto target = Handles().Get(logger);
        Require(line != nullptr);
        const char* const text = target->At(index);
        Require(text != nullptr);
        *line = text;
    });
}
