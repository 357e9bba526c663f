// A scheduled task as the agent keeps it.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/core/values/Values.h"

namespace simulator {

enum class Accessor : size_t { GetId, GetName, GetSetting, GetSection, GetSettings };

inline constexpr std::array<std::string_view, 5> accessorNames = {"get_id", "get_name", "get_setting", "get_section",
                                                                  "get_settings"};

// How an accessor of the task's object behaves.
struct AccessorBehaviour {
    bool isAbsent = false;
    bool givesNull = false;
    int32_t code = 0;  // what it answers without doing anything, unless that is NY_OK
};

struct Task {
    std::string id;
    std::string productId;
    std::optional<std::string> name;
    std::optional<std::string> type;
    ValuePointer settings;  // a table: sections by name
    std::array<AccessorBehaviour, accessorNames.size()> accessors;

    const AccessorBehaviour& BehaviourOf(Accessor accessor) const { return accessors[static_cast<size_t>(accessor)]; }
};

using TaskPointer = std::shared_ptr<const Task>;

// The tasks of a JSON text of the form that ny_sim_scheduler.h describes. Throws Failure when it is not.
std::vector<TaskPointer> TasksFromJson(const char* json);

}  // namespace simulator
