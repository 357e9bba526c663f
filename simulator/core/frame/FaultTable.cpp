#include "simulator/core/frame/FaultTable.h"

namespace simulator {

void FaultTable::Set(std::string_view function, uint32_t nth, int32_t code, ny_sim_fault_mode mode) {
    const std::lock_guard lock(mutex);
    faults.insert_or_assign(std::string(function), Fault{nth, code, mode});
}

std::optional<int32_t> FaultTable::Take(std::string_view function) {
    const std::lock_guard lock(mutex);
    const auto entry = faults.find(function);
    if (entry == faults.end()) {
        return std::nullopt;
    }
    Fault& fault = entry->second;
    if (fault.callsLeft > 1) {
        --fault.callsLeft;
        return std::nullopt;
    }
    ++taken[entry->first];
    const int32_t code = fault.code;
    if (fault.mode == NY_SIM_ONCE) {
        faults.erase(entry);
    }
    return code;
}

void FaultTable::Clear() {
    const std::lock_guard lock(mutex);
    faults.clear();
}

size_t FaultTable::CountTaken(std::string_view function) const {
    const std::lock_guard lock(mutex);
    const auto entry = taken.find(function);
    return entry != taken.end() ? entry->second : 0;
}

}  // namespace simulator
