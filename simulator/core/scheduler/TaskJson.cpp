#include <algorithm>
#include <iterator>
#include <set>
#include <utility>

#include "simulator/core/frame/Failure.h"
#include "simulator/core/scheduler/Task.h"
#include "simulator/core/values/JsonConversion.h"
#include "simulator/core/values/JsonValues.h"

namespace simulator {

namespace {

AccessorBehaviour BehaviourFrom(const Json& json) {
    AccessorBehaviour behaviour;
    if (json.is_number_integer()) {
        behaviour.code = json.get<int32_t>();
        return behaviour;
    }
    const std::string text = TextFrom(json);
    behaviour.isAbsent = text == "absent";
    behaviour.givesNull = text == "null";
    Require(behaviour.isAbsent || behaviour.givesNull);
    return behaviour;
}

void ReadAccessors(Task& task, const Json& json) {
    Require(json.is_object());
    for (const auto& [name, value] : json.items()) {
        const auto index = static_cast<size_t>(
            std::distance(accessorNames.begin(), std::find(accessorNames.begin(), accessorNames.end(), name)));
        Require(index < accessorNames.size());
        task.accessors[index] = BehaviourFrom(value);
    }
}

void ReadMember(Task& task, const std::string& key, const Json& value) {
    if (key == "id") {
        task.id = TextFrom(value);
    } else if (key == "product") {
        task.productId = TextFrom(value);
    } else if (key == "name") {
        task.name = TextFrom(value);
    } else if (key == "type") {
        task.type = TextFrom(value);
    } else if (key == "settings") {
        Require(value.is_object());
        task.settings = ValueFromJson(value.dump().c_str());
    } else {
        Require(key == "accessors");
        ReadAccessors(task, value);
    }
}

TaskPointer TaskFrom(const Json& json) {
    Require(json.is_object() && json.contains("id") && json.contains("product"));
    auto task = std::make_shared<Task>();
    task->settings = ValueFromJson("{}");
    for (const auto& [key, value] : json.items()) {
        ReadMember(*task, key, value);
    }
    return task;
}

}  // namespace

std::vector<TaskPointer> TasksFromJson(const char* json) {
    const Json parsed = Json::parse(json, nullptr, false);
    Require(parsed.is_array());
    std::vector<TaskPointer> tasks;
    std::set<std::string> ids;
    for (const Json& element : parsed) {
        tasks.push_back(TaskFrom(element));
        Require(ids.insert(tasks.back()->id).second);
    }
    return tasks;
}

}  // namespace simulator
