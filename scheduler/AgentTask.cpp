#include "scheduler/AgentTask.h"

#include "values/AgentException.h"

namespace bridge {

namespace {

template <class Method, class... Arguments>
void CallAccessor(ny_task_t* task, Method ny_task_methods_t::*accessor, Arguments... arguments) {
    if (task == nullptr) {
        throw AgentException(NY_INVALID_ARGUMENT);
    }
    if (task->methods == nullptr || task->methods->*accessor == nullptr) {
        throw AgentException(taskAccessorMissing);
    }
    Check((task->methods->*accessor)(task, arguments...));
}

template <class Method>
std::string ReadText(ny_task_t* task, Method ny_task_methods_t::*accessor) {
    const char* text = nullptr;
    CallAccessor(task, accessor, &text);
    return text != nullptr ? text : "";
}

}  // namespace

std::string TaskId(ny_task_t* task) {
    return ReadText(task, &ny_task_methods_t::get_id);
}

std::string TaskName(ny_task_t* task) {
    return ReadText(task, &ny_task_methods_t::get_name);
}

VariantOwner TaskSetting(ny_task_t* task, const std::string& section, const std::string& name,
                         const LibrariesInUse* inUse) {
    VariantOwner value;
    CallAccessor(task, &ny_task_methods_t::get_setting, section.c_str(), name.c_str(), value.Out(inUse));
    return value;
}

VariantOwner TaskSection(ny_task_t* task, const std::string& section, const LibrariesInUse* inUse) {
    VariantOwner table;
    CallAccessor(task, &ny_task_methods_t::get_section, section.c_str(), table.Out(inUse));
    return table;
}

VariantOwner TaskSettings(ny_task_t* task, const LibrariesInUse* inUse) {
    VariantOwner table;
    CallAccessor(task, &ny_task_methods_t::get_settings, table.Out(inUse));
    return table;
}

}  // namespace bridge
